// SPDX-License-Identifier: MIT
#include "core/visible_text.h"

#include <cstdint>
#include <cstdio>

namespace ts3d {
namespace {

/// The character that `text` begins with, and its length in bytes. A byte that is none in UTF-8 counts by
/// itself, as older terminals take it.
uint32_t FirstCharacter(std::string_view text, size_t& length) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const uint32_t lead = byte(0);
  length = lead >= 0xc2 && lead < 0xe0   ? 2
           : lead >= 0xe0 && lead < 0xf0 ? 3
           : lead >= 0xf0 && lead < 0xf5 ? 4
                                         : 1;
  uint32_t character = length == 1 ? lead : lead & (0x7fu >> length);
  for (size_t i = 1; i < length; ++i) {
    if (i >= text.size() || (byte(i) & 0xc0) != 0x80) {
      length = 1;
      return lead;
    }
    character = character << 6 | (byte(i) & 0x3fu);
  }
  return character;
}

bool IsControl(uint32_t c) { return c < 0x20 || (c >= 0x7f && c < 0xa0); }

/// Marks of direction, and ends of lines and paragraphs.
bool TurnsText(uint32_t c) {
  return c == 0x61c || c == 0x200e || c == 0x200f || (c >= 0x2028 && c <= 0x202e) ||
         (c >= 0x2066 && c <= 0x2069);
}

std::string Visible(std::string_view text, bool keepsLines) {
  std::string visible;
  for (size_t length = 0; !text.empty(); text.remove_prefix(length)) {
    const uint32_t c = FirstCharacter(text, length);
    if ((IsControl(c) && !(keepsLines && c == '\n')) || TurnsText(c)) {
      char shown[8];
      std::snprintf(shown, sizeof shown, "\\u%04x", static_cast<unsigned>(c & 0xffff));
      visible += shown;
    } else {
      visible += text.substr(0, length);
    }
  }
  return visible;
}

}  // namespace

std::string VisibleText(std::string_view text) { return Visible(text, false); }

std::string VisibleLines(std::string_view text) { return Visible(text, true); }

}  // namespace ts3d
