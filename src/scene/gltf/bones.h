// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/shown_nodes.h"

namespace scene::gltf {

/// Which nodes are bones.
struct Bones {
  std::vector<bool> isBone;         ///< of each node of the document
  std::vector<uint32_t> boneAbove;  ///< nearest bone that is the node or above it, or kNone

  /// The bone that a node hangs on, or kNone.
  uint32_t ParentOf(const Document& document, uint32_t node) const {
    const uint32_t parent = document.nodes[node].parent;
    return parent == kNone ? kNone : boneAbove[parent];
  }
  bool IsTop(const Document& document, uint32_t node) const {
    return isBone[node] && ParentOf(document, node) == kNone;
  }
};

/// Joints, the bones of an avatar's human and all nodes between them are bones.
Bones FindBones(const Document& document, const ShownNodes& shown);

}  // namespace scene::gltf
