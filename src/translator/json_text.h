// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>

namespace translator {

/// The length of the UTF-8 character that `text` starts with; 0 when it starts with none.
inline size_t CharacterLength(std::string_view text) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(i < text.size() ? text[i] : 0); };
  const size_t length = byte(0) < 0x80   ? 1
                        : byte(0) < 0xc2 ? 0
                        : byte(0) < 0xe0 ? 2
                        : byte(0) < 0xf0 ? 3
                        : byte(0) < 0xf5 ? 4
                                         : 0;
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xc0) != 0x80) return 0;
  }
  const unsigned second = byte(1);
  const bool isOutOfRange = (byte(0) == 0xe0 && second < 0xa0) || (byte(0) == 0xed && second > 0x9f) ||
                            (byte(0) == 0xf0 && second < 0x90) || (byte(0) == 0xf4 && second > 0x8f);
  return isOutOfRange ? 0 : length;
}

/// `text` in quotes. Bytes that are no UTF-8 are taken for Latin-1, as old formats have it.
inline std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  while (!text.empty()) {
    const size_t length = CharacterLength(text);
    const auto byte = static_cast<unsigned char>(text[0]);
    if (length == 0 || byte < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", byte);
      quoted += escape;
    } else {
      if (byte == '"' || byte == '\\') quoted += '\\';
      quoted += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return quoted + '"';
}

/// `number` in JSON, which has none that is not finite.
inline std::string Number(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%.9g", std::isfinite(number) ? number : 0.0);
  return text;
}

/// A list in JSON that is written element by element.
class JsonList {
 public:
  /// @return the number of the element
  size_t Add(std::string_view element) {
    if (count_ > 0) text_ += ',';
    text_ += element;
    return count_++;
  }
  size_t Count() const { return count_; }
  std::string Text() const { return "[" + text_ + "]"; }

 private:
  std::string text_;
  size_t count_ = 0;
};

}  // namespace translator
