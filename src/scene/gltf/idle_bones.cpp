// SPDX-License-Identifier: MIT
#include "scene/gltf/idle_bones.h"

#include <algorithm>

#include "scene/gltf/moving_joints.h"

namespace scene::gltf {
namespace {

/// Nodes that move vertices or have a mesh, the bones of an avatar's human, and all that these stand below.
std::vector<bool> FindUsedNodes(const Document& document, const AccessorReader& accessors, Budget& budget,
                                std::span<const uint32_t> order) {
  std::vector<bool> isUsed = FindMovingJoints(document, accessors, budget);
  for (const auto& [name, node] : document.avatar.humanoid) isUsed[node] = true;
  for (size_t i = order.size(); i-- > 0;) {
    const uint32_t node = order[i], parent = document.nodes[node].parent;
    if (document.nodes[node].mesh != kNone) isUsed[node] = true;
    if (isUsed[node] && parent != kNone) isUsed[parent] = true;
  }
  return isUsed;
}

}  // namespace

void DropIdleBones(const Document& document, const AccessorReader& accessors, Budget& budget,
                   std::span<const uint32_t> order, Bones& bones) {
  const auto isTop = [&](uint32_t node) { return bones.IsTop(document, node); };
  const auto first = std::find_if(order.begin(), order.end(), isTop);
  if (std::count_if(first, order.end(), isTop) < 2) return;
  const std::vector<bool> isUsed = FindUsedNodes(document, accessors, budget, order);
  const auto isUsedTop = [&](uint32_t node) { return isTop(node) && isUsed[node]; };
  if (!isUsed[*first] || std::count_if(first, order.end(), isUsedTop) > 1) return;
  for (const uint32_t node : order) {
    const bool isIdle =
        isTop(node) ? !isUsed[node] : bones.isBone[node] && !bones.isBone[bones.ParentOf(document, node)];
    if (isIdle) bones.isBone[node] = false;
  }
}

}  // namespace scene::gltf
