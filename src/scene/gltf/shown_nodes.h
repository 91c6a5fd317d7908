// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/climb_limit.h"

namespace scene::gltf {

/// The nodes that are shown, and the skeletons of their meshes.
struct ShownNodes {
  std::vector<uint32_t> order;  ///< parents first
  std::vector<bool> isShown;    ///< of each node of the document
  std::vector<uint32_t> depth;  ///< of each node of the document: how many are above it
};

/// @throws Fault
ShownNodes FindShownNodes(const Document& document, ClimbLimit& climb);

}  // namespace scene::gltf
