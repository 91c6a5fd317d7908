// SPDX-License-Identifier: MIT
#include "scene/gltf/node_places.h"

namespace scene::gltf {

KFbxXMatrix NodePlaces::Of(uint32_t node) {
  KFbxXMatrix below;
  while (node != kNone && !fixed_[node]) {
    below = document_.nodes[node].local * below;
    node = document_.nodes[node].parent;
    climb_.Step();
  }
  return (node == kNone ? world_ : *fixed_[node]) * below;
}

std::vector<KFbxXMatrix> NodePlaces::All(std::span<const uint32_t> order) const {
  std::vector<KFbxXMatrix> places(document_.nodes.size(), world_);
  for (const uint32_t node : order) {
    const uint32_t parent = document_.nodes[node].parent;
    places[node] = fixed_[node] ? *fixed_[node]
                                : (parent == kNone ? world_ : places[parent]) * document_.nodes[node].local;
  }
  return places;
}

}  // namespace scene::gltf
