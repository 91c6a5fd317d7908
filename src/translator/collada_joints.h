// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace translator {

/// What an attribute says, but for characters that are told by their numbers.
inline std::string Unescaped(std::string_view value) {
  static constexpr std::pair<std::string_view, char> kEscapes[] = {
      {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
  std::string text;
  while (!value.empty()) {
    std::pair<std::string_view, char> next{value.substr(0, 1), value[0]};
    for (const auto& escape : kEscapes) {
      if (value.starts_with(escape.first)) next = escape;
    }
    text += next.second;
    value.remove_prefix(next.first.size());
  }
  return text;
}

/// Names and identifiers of the nodes that a Collada file calls joints. The library keeps of joints those with weights.
inline std::set<std::string> FindColladaJoints(std::string_view file) {
  std::set<std::string> joints;
  for (size_t at = file.find("<node"); at != file.npos; at = file.find("<node", at + 1)) {
    const std::string_view element = file.substr(at, file.find('>', at) - at);
    if (element.find("\"JOINT\"") == element.npos && element.find("'JOINT'") == element.npos) continue;
    for (const std::string_view attribute : {" id=", " name="}) {
      const size_t value = element.find(attribute);
      if (value == element.npos || value + attribute.size() + 1 >= element.size()) continue;
      const size_t start = value + attribute.size() + 1;
      const size_t end = element.find(element[start - 1], start);
      if (end != element.npos) joints.insert(Unescaped(element.substr(start, end - start)));
    }
  }
  return joints;
}

}  // namespace translator
