// SPDX-License-Identifier: MIT
#include "core/json_writer.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace ts3d {
namespace {

bool IsBetween(char c, unsigned least, unsigned most) {
  const unsigned byte = static_cast<unsigned char>(c);
  return byte >= least && byte <= most;
}

/// Bytes of the UTF-8 character that `text` begins with; of one that breaks off, those that are there.
/// @param isWhole  whether it is one
size_t CharacterLength(std::string_view text, bool& isWhole) {
  const unsigned lead = static_cast<unsigned char>(text[0]);
  const size_t length = lead < 0x80   ? 1
                        : lead < 0xc2 ? 0
                        : lead < 0xe0 ? 2
                        : lead < 0xf0 ? 3
                        : lead < 0xf5 ? 4
                                      : 0;
  // The second byte rules out what is too long for its character, halves of pairs and what lies beyond the end.
  const unsigned least = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
  const unsigned most = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
  size_t read = 1;
  while (read < length && read < text.size() &&
         IsBetween(text[read], read == 1 ? least : 0x80, read == 1 ? most : 0xbf)) {
    ++read;
  }
  isWhole = read == length;
  return read;
}

/// The letter of the short escape for `c`; none: 0.
char EscapeLetter(char c) {
  switch (c) {
    case '"':
    case '\\':
      return c;
    case '\b':
      return 'b';
    case '\f':
      return 'f';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return 0;
  }
}

void AppendEscaped(std::string& text, char c) {
  if (const char letter = EscapeLetter(c)) {
    text.append({'\\', letter});
  } else {
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(c)));
    text += escape;
  }
}

}  // namespace

void JsonWriter::Key(std::string_view name) {
  Advance();
  Quote(name);
  text_ += layout_ == Layout::Lines ? ": " : ":";
  hasKey_ = true;
}

void JsonWriter::Value(std::string_view text) {
  Advance();
  Quote(text);
}

void JsonWriter::Value(double number) {
  if (!std::isfinite(number)) return Plain("null");
  char text[32];
  Plain({text, std::to_chars(text, text + sizeof text, number).ptr});
}

void JsonWriter::Plain(std::string_view value) {
  Advance();
  text_ += value;
}

void JsonWriter::Open(char bracket) {
  Advance();
  text_ += bracket;
  ++depth_;
  isEmpty_ = true;
}

void JsonWriter::Close(char bracket) {
  --depth_;
  if (!isEmpty_) StartLine();
  text_ += bracket;
  isEmpty_ = false;
}

void JsonWriter::Quote(std::string_view text) {
  constexpr std::string_view kReplacement = "\xef\xbf\xbd";
  text_ += '"';
  bool isWhole = true;
  for (size_t length = 0; !text.empty(); text.remove_prefix(length)) {
    length = CharacterLength(text, isWhole);
    const char c = text[0];
    if (c == '"' || c == '\\' || IsBetween(c, 0, 0x1f)) {
      AppendEscaped(text_, c);
    } else {
      text_ += isWhole ? text.substr(0, length) : kReplacement;
    }
  }
  text_ += '"';
}

void JsonWriter::Advance() {
  const bool isFirst = isEmpty_;
  isEmpty_ = false;
  if (hasKey_ || depth_ == 0) {
    hasKey_ = false;
    return;
  }
  if (!isFirst) text_ += ',';
  StartLine();
}

void JsonWriter::StartLine() {
  if (layout_ == Layout::Compact) return;
  text_ += '\n';
  text_.append(2 * depth_, ' ');
}

}  // namespace ts3d
