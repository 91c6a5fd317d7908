// SPDX-License-Identifier: MIT
#include <algorithm>
#include <unordered_set>
#include <utility>
#include <vector>

#include "check/finding_kinds.h"
#include "check/rig_check.h"
#include "core/names.h"
#include "scene/model/node.h"

namespace ts3d {
namespace {

using scene::KFbxNode;

/// The conversion compares scales without regard to their size; this does not.
bool IsVisiblyUneven(const scene::KFbxVector4& scale) {
  constexpr double kVisible = 0.01;
  const auto [low, high] = std::minmax({scale[0], scale[1], scale[2]});
  return high - low > kVisible * high;
}

/// What the extraction of the bones said.
void TellWarnings(RigCheck& check) {
  static constexpr std::pair<std::string_view, const FindingKind*> kLines[] = {
      {"***100:", &findings::kMirroredBone}, {"***102:", &findings::kLocalMatrix}};
  for (const auto& [prefix, kind] : kLines) {
    for (const std::string& bone : check.lines.After(prefix)) check.report.Add(*kind, bone);
  }
  const std::vector<std::string> uneven = check.lines.After("***101:");
  const std::unordered_set<std::string> isUneven(uneven.begin(), uneven.end());
  const SkeletonState& skeleton = *check.job.skeleton;
  for (int32_t id = 0; id < skeleton.bones.BoneCount(); ++id) {
    const std::string& name = skeleton.bones.FindById(id)->name;
    if (!isUneven.contains(name)) continue;
    const scene::KFbxVector4 scale =
        RestMatrix(*skeleton.boneNodes[static_cast<size_t>(id)], skeleton).GetS();
    check.report.Add(IsVisiblyUneven(scale) ? findings::kUnevenScale : findings::kNearlyEvenScale, name);
  }
}

/// Looks for skeleton nodes that are no bones, and for the reason.
class LostBones {
 public:
  explicit LostBones(RigCheck& check) : check_(check) {
    const auto& nodes = check.job.skeleton->boneNodes;
    bones_.insert(nodes.begin(), nodes.end());
  }

  /// @return whether some are hidden
  bool Tell() {
    Walk();
    for (const auto& [group, count] : hidden_) {
      check_.report.Add(findings::kHiddenBones, group->GetName(), {std::to_string(count)});
    }
    return !hidden_.empty();
  }

 private:
  struct Pending {
    const KFbxNode* node;
    const KFbxNode* group;  ///< the topmost node without attribute above
    bool lost;              ///< below a skeleton node that is told of already
  };

  void Walk() {
    std::vector<Pending> pending;
    PushChildren({check_.job.sceneRoot, nullptr, false}, pending);
    while (!pending.empty()) {
      Pending next = pending.back();
      pending.pop_back();
      if (!next.group && !next.node->GetNodeAttribute()) next.group = next.node;
      if (next.node->IsSkeleton() && !bones_.contains(next.node)) Lose(next);
      PushChildren(next, pending);
    }
  }

  static void PushChildren(const Pending& parent, std::vector<Pending>& pending) {
    for (int i = parent.node->GetChildCount(); i-- > 0;) {
      pending.push_back({parent.node->GetChild(i), parent.group, parent.lost});
    }
  }

  void Lose(Pending& next) {
    if (next.group) {
      // The walk is depth first: what is below one group comes in one go.
      if (hidden_.empty() || hidden_.back().first != next.group) hidden_.emplace_back(next.group, 0);
      ++hidden_.back().second;
    } else if (!next.lost) {
      check_.report.Add(findings::kSecondRoot, next.node->GetName(),
                        {check_.job.skeleton->bones.Root().children[0]->name});
    }
    next.lost = true;
  }

  RigCheck& check_;
  std::unordered_set<const KFbxNode*> bones_;
  std::vector<std::pair<const KFbxNode*, size_t>> hidden_;
};

void TellNames(RigCheck& check) {
  const SkeletonState& skeleton = *check.job.skeleton;
  for (int32_t id = 0; id < skeleton.bones.BoneCount(); ++id) {
    const BoneNode& bone = *skeleton.bones.FindById(id);
    const std::string& name = skeleton.boneNodes[static_cast<size_t>(id)]->GetName();
    if (bone.name.empty()) {
      check.report.Add(findings::kUnnamedBone, name, {bone.parent->name});
    } else if (bone.name != name) {
      check.report.Add(findings::kBoneNameChanged, name, {bone.name});
    }
    const BoneNode* first = skeleton.bones.FindByName(bone.name);
    if (first != &bone && !bone.name.empty()) check.report.Add(findings::kSameBoneName, bone.name);
  }
}

}  // namespace

void CheckBones(RigCheck& check) {
  TellWarnings(check);
  const bool hidden = LostBones(check).Tell();
  if (check.job.skeleton->hasExtractedBones) {
    if (check.lines.Count(">>> No Defined Bind Pose!") > 0) check.report.Add(findings::kNoBindPose);
  } else if (!hidden) {
    check.report.Add(findings::kNoSkeleton);
  }
  TellNames(check);
}

}  // namespace ts3d
