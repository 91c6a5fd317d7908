// SPDX-License-Identifier: MIT
//
// Text as files and command lines have it: letters are those of ASCII, whatever the locale.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace base {

inline constexpr std::string_view kBlanks = " \t\r\n";

constexpr char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// Copy of `text` with its letters in lower case.
inline std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = LowerCase(c);
  return lower;
}

/// Compares without regard to the case of letters.
constexpr bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}

/// Compares without regard to the case of letters.
constexpr bool EndsWithIgnoreCase(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() && EqualsIgnoreCase(text.substr(text.size() - ending.size()), ending);
}

/// Whether the file name `name` ends in `extension`, which begins with a dot, behind something.
constexpr bool HasExtension(std::string_view name, std::string_view extension) {
  return name.size() > extension.size() && EndsWithIgnoreCase(name, extension);
}

/// What a host passed, where null means nothing.
inline std::string TextOrEmpty(const char* text) { return text ? text : ""; }

/// `text` behind the mark that says that it is UTF-8.
constexpr std::string_view WithoutByteOrderMark(std::string_view text) {
  return text.starts_with("\xef\xbb\xbf") ? text.substr(3) : text;
}

/// `text` from its first letter that is no blank.
constexpr std::string_view WithoutBlanksBefore(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

/// Where the content of a file begins: behind the mark and blanks.
constexpr std::string_view TextStart(std::string_view text) {
  return WithoutBlanksBefore(WithoutByteOrderMark(text));
}

/// `text` without the blanks around it.
constexpr std::string_view Trimmed(std::string_view text) {
  text = WithoutBlanksBefore(text);
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

}  // namespace base
