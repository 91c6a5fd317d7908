// SPDX-License-Identifier: MIT
#include "mesh/scene_walk.h"

#include <vector>

namespace ts3d {

void ForEachMeshNode(const scene::KFbxNode* node, const std::function<void(const scene::KFbxNode&)>& visit) {
  if (!node) return;
  // A list of its own instead of recursion: node trees may be deeper than the call stack.
  std::vector<const scene::KFbxNode*> pending{node};
  while (!pending.empty()) {
    const scene::KFbxNode& next = *pending.back();
    pending.pop_back();
    const scene::KFbxNodeAttribute* attribute = next.GetNodeAttribute();
    if (attribute && attribute->GetAttributeType() == scene::KFbxNodeAttribute::EAttributeType::eMESH) {
      visit(next);
    }
    for (int i = next.GetChildCount(); i-- > 0;) pending.push_back(next.GetChild(i));
  }
}

}  // namespace ts3d
