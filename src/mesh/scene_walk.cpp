// SPDX-License-Identifier: MIT
#include "mesh/scene_walk.h"

#include <vector>

#include "mesh/convert_mesh.h"

namespace ts3d {

void WalkSceneNode(const scene::KFbxNode* node, ConversionJob& job, PackagedNameSet& packagedNames) {
  if (!node) return;
  // A list of its own instead of recursion: node trees may be deeper than the call stack.
  std::vector<const scene::KFbxNode*> pending{node};
  while (!pending.empty()) {
    const scene::KFbxNode& next = *pending.back();
    pending.pop_back();
    const scene::KFbxNodeAttribute* attribute = next.GetNodeAttribute();
    if (attribute && attribute->GetAttributeType() == scene::KFbxNodeAttribute::EAttributeType::eMESH) {
      ConvertMeshNode(next, job, packagedNames);
    }
    for (int i = next.GetChildCount(); i-- > 0;) pending.push_back(next.GetChild(i));
  }
}

}  // namespace ts3d
