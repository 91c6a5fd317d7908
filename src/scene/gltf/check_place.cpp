// SPDX-License-Identifier: MIT
#include "scene/gltf/check_place.h"

#include <cmath>

namespace scene::gltf {
namespace {

std::string NameForUser(const Document& document, uint32_t node) {
  constexpr size_t kLongest = 60;
  const std::string& name = document.nodes[node].name;
  return name.empty() ? std::to_string(node) : "\"" + name.substr(0, kLongest) + "\"";
}

}  // namespace

void CheckPlace(const Document& document, uint32_t node, const KFbxXMatrix& place) {
  // Floats end at 3.4e38, and there has to be room for the points of meshes, and for places told from other bones.
  constexpr double kFarthest = 1e30;
  for (size_t i = 0; i < 16; ++i) {
    if (std::abs(place.At(i)) <= kFarthest) continue;
    throw Fault(
        "node " + NameForUser(document, node) +
        " is too large or too far away: check its translation, scale or matrix, those of the nodes above "
        "it, and the inverse bind matrices of its skin");
  }
}

}  // namespace scene::gltf
