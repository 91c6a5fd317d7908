// SPDX-License-Identifier: MIT
#include "scene/gltf/moving_joints.h"

#include <algorithm>

#include "scene/gltf/control_points.h"

namespace scene::gltf {
namespace {

void MarkAll(const Skin& skin, std::vector<bool>& moves) {
  for (const uint32_t joint : skin.joints) moves[joint] = true;
}

void MarkMoving(const Skin& skin, const InfluenceSet& set, std::vector<bool>& moves) {
  for (size_t vertex = 0; vertex < set.weights.size(); ++vertex) {
    set.ForEach(vertex, [&](size_t, uint32_t joint, uint32_t) {
      if (joint < skin.joints.size()) moves[skin.joints[joint]] = true;
    });
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
          MarkMoving(skin, {accessors.Integers(joints, 4), accessors.Floats(weights, 4)}, moves);
          budget.ReturnTo(before);
        }
      }
    }
  }
  return moves;
}

}  // namespace scene::gltf
