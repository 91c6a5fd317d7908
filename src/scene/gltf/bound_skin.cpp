// SPDX-License-Identifier: MIT
#include "scene/gltf/bound_skin.h"

#include <algorithm>

namespace scene::gltf {

bool BoundSkin::HasBindPose() const {
  return inverseBind.size() == 1 ||
         std::any_of(inverseBind.begin(), inverseBind.end(), [&](const KFbxXMatrix& matrix) {
           for (size_t i = 0; i < 16; ++i) {
             if (matrix.At(i) != inverseBind[0].At(i)) return true;
           }
           return false;
         });
}

std::vector<KFbxXMatrix> ReadInverseBind(const Skin& skin, const AccessorReader& accessors) {
  std::vector<KFbxXMatrix> matrices(skin.joints.size());
  if (skin.inverseBind == kNone) return matrices;
  const FloatElements stored = accessors.Floats(skin.inverseBind, 16);
  if (stored.size() < matrices.size()) throw Fault("a skin has fewer inverse bind matrices than joints");
  for (size_t i = 0; i < matrices.size(); ++i) {
    for (size_t k = 0; k < 16; ++k) {
      if (k % 4 != 3) matrices[i].At(k) = static_cast<double>(stored.At(i, k));
    }
  }
  return matrices;
}

}  // namespace scene::gltf
