// SPDX-License-Identifier: MIT
#include "scene/gltf/shown_nodes.h"

namespace scene::gltf {
namespace {

void AddTree(const Document& document, uint32_t root, ShownNodes& shown) {
  std::vector<uint32_t> pending{root};
  while (!pending.empty()) {
    const uint32_t index = pending.back();
    pending.pop_back();
    if (shown.isShown[index]) continue;
    const Node& node = document.nodes[index];
    shown.isShown[index] = true;
    shown.depth[index] = node.parent == kNone ? 0 : shown.depth[node.parent] + 1;
    shown.order.push_back(index);
    for (size_t i = node.children.size(); i-- > 0;) pending.push_back(node.children[i]);
  }
}

uint32_t TopOf(const Document& document, uint32_t node, ClimbLimit& climb) {
  uint32_t top = node;
  while (document.nodes[top].parent != kNone) {
    top = document.nodes[top].parent;
    if (top == node) throw Fault("its nodes go round in circles");
    climb.Step();
  }
  return top;
}

/// Skeletons of meshes that are shown may stand outside the scene.
void AddJointsElsewhere(const Document& document, ShownNodes& shown, ClimbLimit& climb) {
  for (size_t i = 0; i < shown.order.size(); ++i) {
    const Node& node = document.nodes[shown.order[i]];
    if (node.mesh == kNone || node.skin == kNone) continue;
    for (const uint32_t joint : document.skins[node.skin].joints) {
      if (!shown.isShown[joint]) AddTree(document, TopOf(document, joint, climb), shown);
    }
  }
}

}  // namespace

ShownNodes FindShownNodes(const Document& document, ClimbLimit& climb) {
  const size_t count = document.nodes.size();
  ShownNodes shown{{}, std::vector<bool>(count), std::vector<uint32_t>(count)};
  for (const uint32_t root : document.roots) AddTree(document, root, shown);
  AddJointsElsewhere(document, shown, climb);
  return shown;
}

}  // namespace scene::gltf
