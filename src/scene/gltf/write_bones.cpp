// SPDX-License-Identifier: MIT
#include "scene/gltf/write_bones.h"

#include <algorithm>
#include <set>

#include "base/plain_text.h"
#include "scene/gltf/rigid_transform.h"
#include "scene/gltf/unique_names.h"

namespace scene::gltf {
namespace {

/// Of each node of the document; empty for those that are no bones.
std::vector<std::string> NameBones(const Document& document, const Rig& rig) {
  std::vector<std::string> names(document.nodes.size());
  UniqueNames unique;
  for (const uint32_t node : rig.order) {
    if (!rig.bones.isBone[node]) continue;
    const std::string& name = document.nodes[node].name;
    names[node] = unique.Take(name.empty() ? "Bone_" + std::to_string(node) : name);
  }
  return names;
}

/// As a joined skeleton's root is called: like no other bone, whatever the letter case.
std::string NameForRoot(const std::vector<std::string>& others) {
  std::set<std::string> taken;
  for (const std::string& name : others) taken.insert(base::LowerCase(name));
  std::string name = "root";
  for (int i = 2; taken.contains(name); ++i) name = "root" + std::to_string(i);
  return name;
}

bool HasSeveralTops(const Document& document, const Rig& rig) {
  return std::count_if(rig.order.begin(), rig.order.end(),
                       [&](uint32_t node) { return rig.bones.IsTop(document, node); }) > 1;
}

}  // namespace

WrittenBones WriteBones(const Document& document, const Rig& rig, NodeWriter& nodes) {
  const std::vector<std::string> names = NameBones(document, rig);
  std::vector<std::string_view> human(names.size());
  for (const auto& [bone, node] : document.avatar.humanoid) human[node] = bone;
  WrittenBones written{std::vector<int64_t>(names.size(), kSceneRoot), rig.places, {}};
  int64_t top = kSceneRoot;
  if (HasSeveralTops(document, rig)) {
    written.addedRoot = NameForRoot(names);
    top = nodes.WriteBone(written.addedRoot, kSceneRoot, {}, {});
  }
  for (const uint32_t node : rig.order) {
    if (!rig.bones.isBone[node]) continue;
    const uint32_t parent = rig.bones.ParentOf(document, node);
    const bool isTop = parent == kNone;
    KFbxXMatrix& place = written.places[node];
    place = WithoutScale(place);
    written.ids[node] = nodes.WriteBone(names[node], isTop ? top : written.ids[parent],
                                        isTop ? KFbxXMatrix() : written.places[parent], place, human[node]);
  }
  return written;
}

}  // namespace scene::gltf
