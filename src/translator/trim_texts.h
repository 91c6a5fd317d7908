// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace translator {

/// Behind the tag, comment or other markup that begins at `start`.
inline size_t EndOfMarkup(std::string_view xml, size_t start) {
  constexpr std::string_view kOthers[][2] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
  for (const auto& [opening, closing] : kOthers) {
    if (!xml.substr(start).starts_with(opening)) continue;
    const size_t end = xml.find(closing, start + opening.size());
    return end == xml.npos ? xml.size() : end + closing.size();
  }
  size_t at = start;
  while (at < xml.size() && xml[at] != '>') {
    if (xml[at] == '"' || xml[at] == '\'') at = std::min(xml.find(xml[at], at + 1), xml.size() - 1);
    ++at;
  }
  return std::min(at + 1, xml.size());
}

/// An XML file without the blanks at both ends of its texts: the library takes those before a number for no number, and
/// those around the name of a file for a part of it.
inline std::string TrimTexts(std::string_view xml) {
  constexpr std::string_view kBlanks = " \t\r\n";
  std::string trimmed;
  trimmed.reserve(xml.size());
  for (size_t at = 0; at < xml.size();) {
    const size_t markup = std::min(xml.find('<', at), xml.size());
    std::string_view text = xml.substr(at, markup - at);
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    trimmed += text.substr(0, text.find_last_not_of(kBlanks) + 1);
    at = EndOfMarkup(xml, markup);
    trimmed += xml.substr(markup, at - markup);
  }
  return trimmed;
}

}  // namespace translator
