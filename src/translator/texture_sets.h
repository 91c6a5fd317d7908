// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "translator/collada_joints.h"

namespace translator {

/// A Collada file in which pictures give the number of their set of texture coordinates: of the set's name the library
/// reads no more than the first number in it, so that it takes "UVMap.001" for the second set.
inline std::string WithNumberedSets(std::string_view collada) {
  const auto forEach = [&](std::string_view start, const auto& use) {
    for (size_t at = collada.find(start); at != collada.npos; at = collada.find(start, at + 1))
      use(collada.substr(at, collada.find('>', at) - at));
  };
  std::map<std::string_view, std::string_view> sets;
  forEach("<bind_vertex_input ", [&](std::string_view element) {
    const std::string_view set = AttributeOf(element, "input_set");
    if (AttributeOf(element, "input_semantic") == "TEXCOORD")
      sets.try_emplace(AttributeOf(element, "semantic"), set.empty() ? "0" : set);
  });
  std::string numbered;
  size_t done = 0;
  forEach("<texture ", [&](std::string_view element) {
    const std::string_view name = AttributeOf(element, "texcoord");
    const auto set = sets.find(name);
    if (name.empty() || set == sets.end()) return;
    const auto at = static_cast<size_t>(name.data() - collada.data());
    numbered.append(collada.substr(done, at - done)).append(set->second);
    done = at + name.size();
  });
  return numbered.append(collada.substr(done));
}

}  // namespace translator
