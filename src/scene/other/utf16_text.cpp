// SPDX-License-Identifier: MIT
#include "scene/other/utf16_text.h"

#include <cstdint>

namespace scene::other {
namespace {

void AddUtf8(std::string& text, uint32_t character) {
  const auto add = [&](uint32_t bits) { text += static_cast<char>(bits); };
  const auto addRest = [&](unsigned shift) { add(0x80 | (character >> shift & 0x3f)); };
  if (character < 0x80) {
    add(character);
  } else if (character < 0x800) {
    add(0xc0 | character >> 6);
    addRest(0);
  } else if (character < 0x10000) {
    add(0xe0 | character >> 12);
    addRest(6);
    addRest(0);
  } else {
    add(0xf0 | character >> 18);
    for (const unsigned shift : {12u, 6u, 0u}) addRest(shift);
  }
}

constexpr bool IsFirstHalf(uint32_t unit) { return unit >= 0xd800 && unit < 0xdc00; }
constexpr bool IsSecondHalf(uint32_t unit) { return unit >= 0xdc00 && unit < 0xe000; }

}  // namespace

std::optional<std::string> FromUtf16(std::string_view bytes) {
  const bool isBigEndian = bytes.starts_with("\xfe\xff");
  if (!isBigEndian && !bytes.starts_with("\xff\xfe")) return std::nullopt;
  const auto byte = [&](size_t i) { return uint32_t{static_cast<unsigned char>(bytes[i])}; };
  const auto unit = [&](size_t i) {
    if (i + 1 >= bytes.size()) return uint32_t{0};
    return isBigEndian ? byte(i) << 8 | byte(i + 1) : byte(i + 1) << 8 | byte(i);
  };
  std::string text;
  text.reserve(bytes.size() / 2);
  for (size_t i = 2; i + 1 < bytes.size(); i += 2) {
    const uint32_t first = unit(i), second = unit(i + 2);
    if (IsFirstHalf(first) && IsSecondHalf(second)) {
      AddUtf8(text, 0x10000 + ((first - 0xd800) << 10) + (second - 0xdc00));
      i += 2;
    } else {
      // Half a character by itself is none.
      AddUtf8(text, IsFirstHalf(first) || IsSecondHalf(first) ? 0xfffd : first);
    }
  }
  return text;
}

}  // namespace scene::other
