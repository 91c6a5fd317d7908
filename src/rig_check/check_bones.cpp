// SPDX-License-Identifier: MIT
#include <algorithm>
#include <unordered_set>
#include <utility>
#include <vector>

#include "core/names.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_check.h"
#include "scene/model/node.h"

namespace ts3d {
namespace {

/// The conversion compares scales without regard to their size; this does not.
bool IsVisiblyUneven(const scene::KFbxVector4& scale) {
  constexpr double kVisible = 0.01;
  const auto [low, high] = std::minmax({scale[0], scale[1], scale[2]});
  return high - low > kVisible * high;
}

/// What the extraction of the bones said.
void TellWarnings(RigCheck& check) {
  static constexpr std::pair<Notice, const FindingKind*> kKinds[] = {
      {Notice::MirroredBone, &findings::kMirroredBone}, {Notice::LocalMatrix, &findings::kLocalMatrix}};
  for (const auto& [notice, kind] : kKinds) {
    for (const std::string& bone : check.notices.ValuesOf(notice)) check.report.Add(*kind, bone);
  }
  const std::vector<std::string> uneven = check.notices.ValuesOf(Notice::UnevenScale);
  const std::unordered_set<std::string> isUneven(uneven.begin(), uneven.end());
  const SkeletonState& skeleton = check.skeleton;
  for (int32_t id = 0; id < skeleton.bones.BoneCount(); ++id) {
    const std::string& name = skeleton.bones.FindById(id)->name;
    if (!isUneven.contains(name)) continue;
    const scene::KFbxVector4 scale =
        RestMatrix(*skeleton.boneNodes[static_cast<size_t>(id)], skeleton).GetS();
    check.report.Add(IsVisiblyUneven(scale) ? findings::kUnevenScale : findings::kNearlyEvenScale, name);
  }
}

void TellNames(RigCheck& check) {
  const SkeletonState& skeleton = check.skeleton;
  for (int32_t id = 0; id < skeleton.bones.BoneCount(); ++id) {
    const BoneNode& bone = *skeleton.bones.FindById(id);
    const std::string& name = skeleton.boneNodes[static_cast<size_t>(id)]->GetName();
    if (bone.name.empty()) {
      check.report.Add(findings::kUnnamedBone, name, {bone.parent->name});
    } else if (bone.name != name) {
      check.report.Add(findings::kBoneNameChanged, name, ChangedBeginning(name, bone.name));
    }
  }
}

}  // namespace

void CheckBones(RigCheck& check) {
  TellWarnings(check);
  TellNames(check);
}

}  // namespace ts3d
