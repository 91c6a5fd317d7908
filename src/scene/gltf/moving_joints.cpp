// SPDX-License-Identifier: MIT
#include "scene/gltf/moving_joints.h"

#include <algorithm>

namespace scene::gltf {
namespace {

void MarkAll(const Skin& skin, std::vector<bool>& moves) {
  for (const uint32_t joint : skin.joints) moves[joint] = true;
}

void MarkMoving(const Skin& skin, const IntegerElements& joints, const FloatElements& weights,
                std::vector<bool>& moves) {
  for (size_t i = 0; i < std::min(joints.size(), weights.size()); ++i) {
    const auto four = joints.Four(i), weightsOfFour = weights.PositiveWords(i);
    for (size_t k = 0; k < 4; ++k) {
      if (weightsOfFour[k] != 0 && four[k] < skin.joints.size()) moves[skin.joints[four[k]]] = true;
    }
  }
}

}  // namespace

std::vector<bool> FindMovingJoints(const Document& document, const AccessorReader& accessors,
                                   Budget& budget) {
  const uint64_t before = budget.Used();
  constexpr uint64_t kMostVertices = 20'000'000;
  uint64_t vertices = 0;
  std::vector<bool> moves(document.nodes.size());
  for (const Node& node : document.nodes) {
    if (node.mesh == kNone || node.skin == kNone) continue;
    const Skin& skin = document.skins[node.skin];
    for (const Primitive& primitive : document.meshes[node.mesh].primitives) {
      for (size_t set = 0; set < std::min(primitive.joints.size(), primitive.weights.size()); ++set) {
        const uint32_t joints = primitive.joints[set], weights = primitive.weights[set];
        if ((vertices += accessors.CountOf(joints)) > kMostVertices) {
          MarkAll(skin, moves);
        } else {
          MarkMoving(skin, accessors.Integers(joints, 4), accessors.Floats(weights, 4), moves);
          budget.ReturnTo(before);
        }
      }
    }
  }
  return moves;
}

}  // namespace scene::gltf
