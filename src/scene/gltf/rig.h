// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/gltf/accessors.h"
#include "scene/gltf/bones.h"
#include "scene/gltf/bound_skin.h"

namespace scene::gltf {

/// Which nodes are bones, and where all of them stood when the skins were bound.
struct Rig {
  std::vector<uint32_t> order;  ///< the nodes that are shown, parents first
  Bones bones;
  std::vector<KFbxXMatrix> places;  ///< world transform of each node
  std::vector<BoundSkin> skins;
  bool isPosed = false;  ///< the joints stand otherwise now than when their skins were bound
};

/// Finds the bones and binds the skins.
/// @param budget  what nodes and joints take is taken from it
/// @param world   what the world of the file becomes: its unit and its front
/// @throws Fault
Rig FindRig(const Document& document, const AccessorReader& accessors, Budget& budget,
            const KFbxXMatrix& world);

}  // namespace scene::gltf
