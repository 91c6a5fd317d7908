// SPDX-License-Identifier: MIT
#include "skeleton/top_bones.h"

#include <set>

#include "core/names.h"
#include "scene/model/walk_nodes.h"

namespace ts3d {

using scene::Below;
using scene::KFbxNode;

std::vector<const KFbxNode*> FindTopBones(const scene::KFbxScene& scene, bool openGroups) {
  std::vector<const KFbxNode*> tops;
  const KFbxNode& root = *scene.GetRootNode();
  WalkNodes(root, [&](const KFbxNode& node) {
    if (&node == &root) return Below::Visit;
    if (!node.GetNodeAttribute() && !openGroups) return Below::Skip;
    if (!node.IsSkeleton()) return Below::Visit;
    tops.push_back(&node);
    return Below::Skip;
  });
  return tops;
}

std::string NameForNewRoot(const scene::KFbxScene& scene) {
  std::set<std::string> taken;
  WalkNodes(*scene.GetRootNode(), [&](const KFbxNode& node) {
    if (node.IsSkeleton()) taken.insert(LowerCase(SanitizeMeshName(node.GetName())));
    return Below::Visit;
  });
  std::string name = "root";
  for (int i = 2; taken.contains(name); ++i) name = "root" + std::to_string(i);
  return name;
}

}  // namespace ts3d
