// SPDX-License-Identifier: MIT
#include <algorithm>
#include <set>

#include "rig_check/finding_kinds.h"
#include "rig_check/skin_gaps.h"
#include "rig_check/tell_bone_parents.h"
#include "scene/model/mesh.h"
#include "scene/model/pose.h"
#include "skeleton/csf_writer.h"
#include "skeleton/rigid_meshes.h"

namespace ts3d {
namespace {

using scene::KFbxNode;

/// The gaps of the same meshes in a skeleton with rigid bones.
SkinGaps TryRigidBones(const ModelSource& given, const std::vector<MeshFacts>& meshes, double size) {
  Settings settings = given.settings;
  settings.repairs.rigidBones = true;
  const StatusChannel mute;
  const ModelSource model{given.scene, settings, mute, given.actorType, given.isFbxFile};
  SkeletonState skeleton;
  ExtractSkeleton(model, skeleton);
  return MeasureSkins(model, skeleton, meshes, size);
}

class PlaceTeller {
 public:
  PlaceTeller(const ModelSource& model, SkeletonState& skeleton, const std::vector<MeshFacts>& meshes,
              RigReport& report)
      : model_(model),
        skeleton_(skeleton),
        meshes_(meshes),
        report_(report),
        size_(ModelSize(meshes, skeleton_)),
        gaps_(MeasureSkins(model, skeleton, meshes, size_)) {}

  void Tell() {
    TellBoneParents(model_, skeleton_, size_, gaps_, report_);
    if (!TellScales()) {
      TellBones(findings::kBonesAstray, gaps_.atRest);
      TellSkins();
    }
    TellUnposedSkins();
    TellObjects();
    if (!skeleton_.bindPose) {
      // Other formats have no bind poses that somebody could have left out.
      if (!model_.isFbxFile) return;
      report_.Add(anyMisplaced_ ? findings::kNoBindPose : findings::kNoBindPoseHarmless);
    } else {
      TellUnbound();
      TellBones(findings::kOtherBindPose, gaps_.fromBound);
    }
  }

 private:
  const std::string& NameOf(int32_t bone) const { return skeleton_.bones.FindById(bone)->name; }

  BoneGap WorstOf(const std::vector<BoneGap>& bones) const {
    BoneGap worst;
    for (const BoneGap& bone : bones) {
      if (worst.bone < 0 || bone.gap.IsWorseThan(worst.gap, size_)) worst = bone;
    }
    return worst;
  }

  /// Names the worst of `bones`.
  void TellBones(const FindingKind& kind, const std::vector<BoneGap>& bones) {
    if (bones.empty()) return;
    const BoneGap worst = WorstOf(bones);
    report_.Add(kind, NameOf(worst.bone), {std::to_string(bones.size()), worst.gap.Text(size_)});
  }

  /// @return whether bones and posed skins are apart for nothing but the scales of bones
  bool TellScales() {
    std::vector<BoneGap> off = gaps_.atRest;
    for (const SkinGaps::OfMesh& mesh : gaps_.ofMeshes) {
      if (mesh.isPosed) off.push_back(mesh.worst);
    }
    if (off.empty() || model_.settings.repairs.rigidBones) return false;
    const SkinGaps rigid = TryRigidBones(model_, meshes_, size_);
    const auto isPosed = [](const SkinGaps::OfMesh& mesh) { return mesh.isPosed; };
    if (!rigid.atRest.empty() || std::any_of(rigid.ofMeshes.begin(), rigid.ofMeshes.end(), isPosed)) {
      return false;
    }
    TellBones(findings::kScaledBones, off);
    return true;
  }

  void TellSkins() {
    for (const SkinGaps::OfMesh& found : gaps_.ofMeshes) {
      if (found.isPosed) TellSkin(findings::kSkinOffBones, found);
    }
  }

  void TellUnposedSkins() {
    for (const SkinGaps::OfMesh& found : gaps_.ofMeshes) {
      if (found.isPosed) continue;
      TellSkin(findings::kSkinNotBound, found);
      anyMisplaced_ = true;
    }
  }

  void TellSkin(const FindingKind& kind, const SkinGaps::OfMesh& found) {
    report_.Add(kind, found.mesh->node->GetName(), {NameOf(found.worst.bone), found.worst.gap.Text(size_)});
  }

  /// Meshes that follow no bone and lose the place of their objects.
  void TellObjects() {
    if (model_.settings.repairs.attachRigid) return;
    for (const MeshFacts& mesh : meshes_) {
      if (mesh.IsPosed(skeleton_) || mesh.FollowsAny() || mesh.points.empty()) continue;
      if (!DifferVisibly(mesh.node->GetGlobalFromDefaultTake(), {}, size_)) continue;
      report_.Add(findings::kMeshNotBound, mesh.node->GetName());
      anyMisplaced_ = true;
    }
  }

  void TellUnbound() {
    const BoneGap worst = WorstOf(gaps_.fromPresent);
    std::set<int32_t> apart;
    for (const BoneGap& bone : gaps_.fromPresent) apart.insert(bone.bone);
    for (size_t id = 0; id < skeleton_.boneNodes.size(); ++id) {
      const BoneNode& bone = *skeleton_.bones.FindById(static_cast<int32_t>(id));
      const KFbxNode* node = skeleton_.boneNodes[id];
      if (!node || BoundMatrix(*node, skeleton_)) continue;
      if (apart.contains(bone.id)) {
        report_.Add(findings::kBoneNotBound, bone.name, {NameOf(worst.bone), worst.gap.Text(size_)});
      } else {
        report_.Add(bone.weighted ? findings::kBoneNotBoundHarmless : findings::kIdleBoneNotBound, bone.name);
      }
    }
  }

  const ModelSource& model_;
  SkeletonState& skeleton_;
  const std::vector<MeshFacts>& meshes_;
  RigReport& report_;
  double size_;
  SkinGaps gaps_;
  bool anyMisplaced_ = false;
};

}  // namespace

void TellSkinPlaces(const ModelSource& model, SkeletonState& skeleton, const std::vector<MeshFacts>& meshes,
                    RigReport& report) {
  if (!meshes.empty()) PlaceTeller(model, skeleton, meshes, report).Tell();
}

void TellStaticMeshes(const ModelSource& model, SkeletonState& skeleton, const std::vector<MeshFacts>& meshes,
                      RigReport& report) {
  bool needsSkeleton = model.actorType != ActorType::None;
  const double size = ModelSize(meshes, skeleton);
  for (const MeshFacts& mesh : meshes) {
    if (HasSkin(*mesh.node->GetMesh())) needsSkeleton = true;
    if (!mesh.points.empty() && !model.settings.repairs.attachRigid &&
        DifferVisibly(mesh.node->GetGlobalFromDefaultTake(), {}, size)) {
      report.Add(findings::kPlaceLost, mesh.node->GetName());
    }
  }
  report.Add(needsSkeleton ? findings::kNoSkeleton : findings::kStaticModel);
}

}  // namespace ts3d
