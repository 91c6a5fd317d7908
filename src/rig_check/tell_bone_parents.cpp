// SPDX-License-Identifier: MIT
#include "rig_check/tell_bone_parents.h"

#include <set>
#include <vector>

#include "rig_check/finding_kinds.h"
#include "skeleton/bind_pose.h"

namespace ts3d {
namespace {

using scene::KFbxNode;
using scene::KFbxXMatrix;

class ParentTeller {
 public:
  ParentTeller(const ModelSource& model, SkeletonState& skeleton, double size, SkinGaps& gaps,
               RigReport& report)
      : model_(model), skeleton_(skeleton), size_(size), gaps_(gaps), report_(report) {}

  void Tell() {
    for (int32_t id = 1; id < skeleton_.bones.BoneCount(); ++id) {
      const KFbxNode* node = NodeOf(id);
      const BoneNode& bone = *skeleton_.bones.FindById(id);
      if (node && !IsTold(bone.parent->id) && IsOff(*node, bone)) told_.insert(id);
    }
    std::erase_if(gaps_.atRest, [&](const BoneGap& off) { return IsTold(off.bone); });
    std::erase_if(gaps_.ofMeshes,
                  [&](const SkinGaps::OfMesh& mesh) { return mesh.isPosed && IsTold(mesh.worst.bone); });
  }

 private:
  const KFbxNode* NodeOf(int32_t bone) const { return skeleton_.boneNodes[static_cast<size_t>(bone)]; }

  /// Whether the bone or one above it was told of.
  bool IsTold(int32_t id) const {
    const BoneNode* bone = skeleton_.bones.FindById(id);
    while (bone && !told_.contains(bone->id)) bone = bone->parent;
    return bone != nullptr;
  }

  KFbxXMatrix WorldOf(const KFbxNode& node) const { return BindWorld(node, model_.scene, skeleton_); }

  /// How far the package has a bone from `place`, at rest or by its bone space.
  Gap GapFrom(const KFbxXMatrix& place, const BoneNode& bone) const {
    Gap gap = GapBetween(place, StoredPlace(bone, skeleton_));
    for (const BoneGap& off : gaps_.atRest) {
      if (off.bone == bone.id && off.gap.IsWorseThan(gap, size_)) gap = off.gap;
    }
    return gap;
  }

  /// Whether some mesh follows the bone or one below it.
  static bool MovesMeshes(const BoneNode& bone) {
    std::vector<const BoneNode*> pending{&bone};
    while (!pending.empty()) {
      const BoneNode& next = *pending.back();
      pending.pop_back();
      if (next.weighted) return true;
      pending.insert(pending.end(), next.children.begin(), next.children.end());
    }
    return false;
  }

  bool IsOff(const KFbxNode& node, const BoneNode& bone) {
    const KFbxNode& above = *node.GetParent();
    const bool isUnbound = bone.weighted && BoundMatrix(node, skeleton_) && !BoundMatrix(above, skeleton_);
    const KFbxNode* parent = NodeOf(bone.parent->id);
    if (!isUnbound && (&above == parent || !parent)) return false;
    const Gap gap = GapFrom(WorldOf(node), bone);
    if (!gap.IsVisible(size_)) return false;
    if (isUnbound) {
      report_.Add(findings::kParentNotBound, bone.name, {gap.Text(size_)});
      return true;
    }
    if (!DifferVisibly(WorldOf(above), WorldOf(*parent), size_) || !MovesMeshes(bone)) return false;
    report_.Add(findings::kNodeBetween, bone.name, {above.GetName(), bone.parent->name, gap.Text(size_)});
    return true;
  }

  const ModelSource& model_;
  SkeletonState& skeleton_;
  double size_;
  SkinGaps& gaps_;
  RigReport& report_;
  std::set<int32_t> told_;
};

}  // namespace

void TellBoneParents(const ModelSource& model, SkeletonState& skeleton, double size, SkinGaps& gaps,
                     RigReport& report) {
  if (!model.settings.repairs.rigidBones) ParentTeller(model, skeleton, size, gaps, report).Tell();
}

}  // namespace ts3d
