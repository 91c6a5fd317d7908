// SPDX-License-Identifier: MIT
#include "skeleton/top_bones.h"

#include <set>

#include "core/names.h"

namespace ts3d {
namespace {

using scene::KFbxNode;

enum class Below { Visit, Skip };

/// Calls `visit` for every node below the root, parents first, children in order; it says whether to go on
/// below the node.
template <typename Visit>
void Walk(const scene::KFbxScene& scene, const Visit& visit) {
  std::vector<const KFbxNode*> pending;
  const auto addChildren = [&](const KFbxNode& node) {
    for (int i = node.GetChildCount(); i-- > 0;) pending.push_back(node.GetChild(i));
  };
  addChildren(*scene.GetRootNode());
  while (!pending.empty()) {
    const KFbxNode& node = *pending.back();
    pending.pop_back();
    if (visit(node) == Below::Visit) addChildren(node);
  }
}

}  // namespace

std::vector<const KFbxNode*> FindTopBones(const scene::KFbxScene& scene, bool openGroups) {
  std::vector<const KFbxNode*> tops;
  Walk(scene, [&](const KFbxNode& node) {
    if (!node.GetNodeAttribute() && !openGroups) return Below::Skip;
    if (!node.IsSkeleton()) return Below::Visit;
    tops.push_back(&node);
    return Below::Skip;
  });
  return tops;
}

std::string NameForNewRoot(const scene::KFbxScene& scene) {
  std::set<std::string> taken;
  Walk(scene, [&](const KFbxNode& node) {
    if (node.IsSkeleton()) taken.insert(LowerCase(SanitizeMeshName(node.GetName())));
    return Below::Visit;
  });
  std::string name = "root";
  for (int i = 2; taken.contains(name); ++i) name = "root" + std::to_string(i);
  return name;
}

}  // namespace ts3d
