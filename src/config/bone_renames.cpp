// SPDX-License-Identifier: MIT
#include "config/bone_renames.h"

#include <set>

#include "config/bone_name_map.h"
#include "core/names.h"

namespace ts3d {
namespace {

std::string Unweighted(std::string_view name) { return std::string("!").append(name); }

}  // namespace

std::string BoneRenameLine(std::string_view oldName, std::string_view newName) {
  std::string line = "\t<bone_rename old=\"";
  return line.append(oldName).append("\" new=\"").append(newName).append("\"/>\n");
}

std::string BoneRenameLines(const BoneTree& bones, std::string_view boneRenameList) {
  std::string lines;
  if (!bones.Root().children.empty()) {
    const std::string& root = bones.Root().children[0]->name;
    lines += BoneRenameLine(root, Unweighted(root));
  }
  if (boneRenameList.empty()) {
    for (int32_t id = 0; id < bones.BoneCount(); ++id) {
      const BoneNode& bone = *bones.FindById(id);
      if (!bone.weighted) lines += BoneRenameLine(bone.name, Unweighted(bone.name));
    }
    return lines;
  }
  for (const std::string_view entry : SplitList(boneRenameList)) {
    std::string_view oldName, newName;
    if (!SplitEntry(entry, oldName, newName)) continue;
    const BoneNode* bone = bones.FindByName(oldName);
    lines += BoneRenameLine(oldName, bone && bone->weighted ? std::string(newName) : Unweighted(newName));
  }
  return lines;
}

std::string MappedBoneRenameLines(const BoneTree& bones, std::string_view boneRenameList) {
  std::set<std::string> named;
  for (const std::string_view entry : SplitList(boneRenameList)) {
    std::string_view oldName, newName;
    if (SplitEntry(entry, oldName, newName)) named.insert(LowerCase(oldName));
  }
  std::string lines;
  for (int32_t id = 0; id < bones.BoneCount(); ++id) {
    const BoneNode& bone = *bones.FindById(id);
    if (bone.weighted || named.contains(LowerCase(bone.name))) continue;
    const std::string_view product = FindProductBoneName(bone.name);
    lines += BoneRenameLine(bone.name, product.empty() ? Unweighted(bone.name) : std::string(product));
  }
  return lines;
}

}  // namespace ts3d
