// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/gltf/accessors.h"

namespace scene::gltf {

/// A skin's joints at the time of binding.
struct BoundSkin {
  std::vector<KFbxXMatrix> inverseBind;  ///< one for each joint, from the mesh's space
  KFbxXMatrix place;                     ///< from the mesh's space into the world
};

/// Which nodes are bones, and where all of them stood when the skins were bound.
struct Rig {
  std::vector<uint32_t> order;      ///< the nodes that are shown, parents first
  std::vector<bool> isBone;         ///< of each node of the document
  std::vector<uint32_t> boneAbove;  ///< nearest bone that is the node or above it, or kNone
  std::vector<KFbxXMatrix> places;  ///< world transform of each node
  std::vector<BoundSkin> skins;
  bool isPosed = false;  ///< the joints stand otherwise now than when their skins were bound
};

/// Joints, the bones of an avatar's human and all nodes between them are bones. A skin is put where its topmost
/// joint stands now; the others stand around that one as the inverse bind matrices say. Of a skeleton that is posed
/// it is put where the node of its mesh stands, if that is near, and without such matrices all joints stay.
/// @param budget  what nodes and joints take is taken from it
/// @param world   what the world of the file becomes: its unit and its front
/// @throws Fault
Rig FindRig(const Document& document, const AccessorReader& accessors, Budget& budget,
            const KFbxXMatrix& world);

/// `m` without scale and shear.
KFbxXMatrix WithoutScale(const KFbxXMatrix& m);

}  // namespace scene::gltf
