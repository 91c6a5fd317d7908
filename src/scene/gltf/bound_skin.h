// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/accessors.h"

namespace scene::gltf {

/// A skin's joints at the time of binding.
struct BoundSkin {
  std::vector<KFbxXMatrix> inverseBind;  ///< one for each joint, from the mesh's space
  KFbxXMatrix place;                     ///< from the mesh's space into the world

  /// Matrices that are all the same, as of skins without any, say nothing of where the joints stood.
  bool HasBindPose() const;
};

/// The inverse bind matrices of a skin's joints; identities where it has none.
/// @throws Fault
std::vector<KFbxXMatrix> ReadInverseBind(const Skin& skin, const AccessorReader& accessors);

}  // namespace scene::gltf
