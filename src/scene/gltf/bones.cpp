// SPDX-License-Identifier: MIT
#include "scene/gltf/bones.h"

namespace scene::gltf {
namespace {

/// Blender's exporter adds a joint beside the others, to which it binds the points that have no weights.
bool IsNeutral(const Node& node) {
  return node.name == "neutral_bone" && node.children.empty() && node.mesh == kNone;
}

/// Those that the file itself calls joints or bones.
std::vector<bool> FindNamedBones(const Document& document, const std::vector<bool>& isShown) {
  std::vector<bool> isBone(document.nodes.size());
  for (const Skin& skin : document.skins) {
    for (const uint32_t joint : skin.joints)
      isBone[joint] = isShown[joint] && !IsNeutral(document.nodes[joint]);
  }
  for (const auto& [name, node] : document.avatar.humanoid) isBone[node] = isShown[node];
  return isBone;
}

std::vector<bool> FindNodesAbove(const Document& document, const std::vector<uint32_t>& order,
                                 const std::vector<bool>& isBone) {
  std::vector<bool> hasBoneBelow(document.nodes.size());
  for (size_t i = order.size(); i-- > 0;) {
    const uint32_t node = order[i], parent = document.nodes[node].parent;
    if (parent != kNone && (isBone[node] || hasBoneBelow[node])) hasBoneBelow[parent] = true;
  }
  return hasBoneBelow;
}

}  // namespace

Bones FindBones(const Document& document, const ShownNodes& shown) {
  Bones bones{FindNamedBones(document, shown.isShown), std::vector<uint32_t>(document.nodes.size(), kNone)};
  const std::vector<bool> hasBoneBelow = FindNodesAbove(document, shown.order, bones.isBone);
  for (const uint32_t node : shown.order) {
    const uint32_t above = bones.ParentOf(document, node);
    if (above != kNone && hasBoneBelow[node]) bones.isBone[node] = true;
    bones.boneAbove[node] = bones.isBone[node] ? node : above;
  }
  return bones;
}

}  // namespace scene::gltf
