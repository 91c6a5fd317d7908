// SPDX-License-Identifier: MIT
#include <algorithm>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "base/file_names.h"
#include "config/mesh_list.h"
#include "core/mesh_filter.h"
#include "core/names.h"
#include "core/similar_names.h"
#include "core/work_files.h"
#include "rig_check/document_names.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_check.h"
#include "rig_check/unmatched_names.h"

namespace ts3d {
namespace {

/// Checks the output names of all meshes.
class NameCheck {
 public:
  explicit NameCheck(RigCheck& check) : check_(check), report_(check.report) {
    MeshList(check.loaded.Root()).ForEach(MeshList::OwnName::First, [&](const ListedName& listed) {
      listed_.insert(listed.name);
    });
  }

  void Run() {
    for (const RigCheck::Slot& slot : check_.slots) {
      TellName(slot);
      TellClash(slot);
      TellPacking(slot);
    }
  }

 private:
  void TellName(const RigCheck::Slot& slot) {
    const std::string name = SanitizeMeshName(slot.node);
    if (name != slot.node) report_.Add(findings::kNameChanged, slot.node, ChangedBeginning(slot.node, name));
    if (BreaksDocument(name)) report_.Add(findings::kXmlName, slot.node);
    // No usual file system takes longer ones.
    constexpr size_t kLongestFileName = 255;
    const std::string file = slot.name + ".cmf";
    if (!platform::IsMemberName(file) || file.size() > kLongestFileName)
      report_.Add(findings::kUnwritable, slot.node);
  }

  void TellClash(const RigCheck::Slot& slot) {
    const auto [entry, isNew] = first_.try_emplace(LowerCase(slot.name), &slot);
    if (isNew) return;
    const RigCheck::Slot& other = *entry->second;
    report_.Add(other.name == slot.name ? findings::kNameClash : findings::kCaseClash, slot.name,
                {other.node, slot.node});
  }

  void TellPacking(const RigCheck::Slot& slot) {
    if (skipThisMesh(slot.name, check_.Filter())) {
      report_.Add(findings::kExcluded, slot.name);
    } else if (!slot.written && listed_.contains(slot.name)) {
      report_.Add(findings::kUnusedSlot, slot.name);
    }
  }

  RigCheck& check_;
  RigReport& report_;
  std::unordered_set<std::string> listed_;
  std::unordered_map<std::string, const RigCheck::Slot*> first_;  ///< by output name in lower case
};

void TellBoneNames(RigCheck& check) {
  const BoneTree& bones = check.skeleton.bones;
  for (int32_t id = 0; id < bones.BoneCount(); ++id) {
    const BoneNode& bone = *bones.FindById(id);
    if (IsNamedAsItIs(bone, id) && BreaksDocument(bone.name)) {
      check.report.Add(findings::kXmlBoneName, bone.name);
    }
  }
}

std::string FileName(const UsedTexture& texture) {
  const std::string& source = texture.fileName.empty() ? texture.relativeFileName : texture.fileName;
  return std::string(base::BaseName(source));
}

void TellTextureNames(RigCheck& check) {
  std::unordered_map<std::string, const UsedTexture*> first;
  for (const UsedTexture& texture : check.report.textures) {
    const auto [entry, isNew] = first.try_emplace(LowerCase(texture.tgaName), &texture);
    if (isNew) continue;
    const std::string name = FileName(texture), other = FileName(*entry->second);
    // Pictures of one name in several folders are taken for copies.
    if (EqualsIgnoreCase(name, other)) continue;
    check.report.Add(findings::kTextureClash, texture.tgaName, {other, name});
  }
}

void TellExclusions(RigCheck& check) {
  const OptionTargets targets = CollectOptionTargets(check.loaded.Root(), check.skeleton.bones);
  for (const UnmatchedName& unmatched : FindUnmatchedNames(check.settings.exclusionList, targets.outputs)) {
    check.report.Add(findings::kUnknownExclusion, unmatched.name, {QuotedNames(unmatched.nearest)});
  }
}

}  // namespace

void CheckNames(RigCheck& check) {
  NameCheck(check).Run();
  TellBoneNames(check);
  TellTextureNames(check);
  TellExclusions(check);
}

std::vector<std::string> ChangedBeginning(const std::string& name, const std::string& cleaned) {
  const auto [end, cleanedEnd] = std::mismatch(name.rbegin(), name.rend(), cleaned.rbegin(), cleaned.rend());
  return {std::string(name.begin(), end.base()), std::string(cleaned.begin(), cleanedEnd.base())};
}

std::vector<std::string> ExpectedMembers(const RigCheck& check) {
  std::vector<std::string> members;
  std::set<std::string> known;
  const auto add = [&](const std::string& name) {
    if (known.insert(name).second) members.push_back(name);
  };
  for (const UsedTexture& texture : check.report.textures) add(texture.tgaName);
  add("skeleton.csf");
  add(FileNamePart(ReplaceExtension(check.path, "xfg")));
  const MeshList meshes(check.loaded.Root());
  for (const char* extension : {".cmf", ".xrf"}) {
    meshes.ForEach(MeshList::OwnName::Last, [&](const ListedName& listed) {
      if (!IsLeftOut(listed, check.Filter())) add(listed.name + extension);
    });
  }
  return members;
}

}  // namespace ts3d
