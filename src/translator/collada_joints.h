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

/// The value of an attribute as the file has it; empty when it is not there.
inline std::string_view AttributeOf(std::string_view element, std::string_view name) {
  for (size_t at = element.find(name); at != element.npos; at = element.find(name, at + 1)) {
    const size_t start = at + name.size() + 2;
    if (at == 0 || element[at - 1] > ' ' || start >= element.size() || element[start - 2] != '=') continue;
    const size_t end = element.find(element[start - 1], start);
    return end == element.npos ? std::string_view() : element.substr(start, end - start);
  }
  return {};
}

/// Names and identifiers of the nodes that a Collada file calls joints. The library keeps of joints those with weights.
inline std::set<std::string> FindColladaJoints(std::string_view file) {
  std::set<std::string> joints;
  for (size_t at = file.find("<node"); at != file.npos; at = file.find("<node", at + 1)) {
    const std::string_view element = file.substr(at, file.find('>', at) - at);
    if (AttributeOf(element, "type") != "JOINT") continue;
    for (const char* attribute : {"id", "name"}) {
      const std::string_view value = AttributeOf(element, attribute);
      if (!value.empty()) joints.insert(Unescaped(value));
    }
  }
  return joints;
}

}  // namespace translator
