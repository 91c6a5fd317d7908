// SPDX-License-Identifier: MIT
#include "rig_check/unmatched_names.h"

#include <algorithm>

#include "config/mesh_list.h"
#include "core/names.h"
#include "core/similar_names.h"
#include "mesh/scene_walk.h"

namespace ts3d {

OptionTargets CollectOptionTargets(const scene::KFbxNode& root, const BoneTree& bones) {
  OptionTargets targets;
  for (int i = 0; i < root.GetChildCount(); ++i) {
    ForEachMeshNode(*root.GetChild(i), [&](const scene::KFbxNode& node) {
      targets.meshes.push_back(SanitizeMeshName(node.GetName()));
    });
  }
  // Meshes below an empty one are not listed, but can be left out.
  targets.outputs = targets.meshes;
  MeshList(root).ForEach(MeshList::OwnName::First,
                         [&](const ListedName& listed) { targets.outputs.push_back(listed.name); });
  for (const BoneNode* bone : bones.PreOrder()) targets.bones.push_back(bone->name);
  return targets;
}

std::vector<UnmatchedName> FindUnmatchedNames(const std::vector<std::string>& asked,
                                              const std::vector<std::string>& existing,
                                              LetterCase letterCase) {
  std::vector<UnmatchedName> unmatched;
  for (const std::string& name : asked) {
    const bool exists = std::any_of(existing.begin(), existing.end(), [&](const std::string& candidate) {
      return letterCase == LetterCase::Exact ? candidate == name : EqualsIgnoreCase(candidate, name);
    });
    if (!exists) unmatched.push_back({name, NearestNames(name, existing)});
  }
  return unmatched;
}

}  // namespace ts3d
