// SPDX-License-Identifier: MIT
#include <algorithm>
#include <set>

#include "rig_check/finding_kinds.h"
#include "rig_check/skin_gaps.h"
#include "scene/model/mesh.h"
#include "scene/model/pose.h"
#include "skeleton/csf_writer.h"

namespace ts3d {
namespace {

using scene::KFbxNode;

bool HasClusters(const KFbxNode& node) {
  const scene::KFbxMesh& mesh = *node.GetMesh();
  for (int s = 0; s < mesh.GetSkinCount(); ++s) {
    if (mesh.GetSkin(s)->GetClusterCount() > 0) return true;
  }
  return false;
}

/// The gaps of the same meshes in a skeleton that the job would have with other settings.
template <typename Change>
SkinGaps Try(const ConversionJob& job, const std::vector<MeshFacts>& meshes, double size, Change change) {
  ConversionJob trial;
  trial.scene = job.scene;
  trial.sceneRoot = job.sceneRoot;
  trial.isFbxFile = job.isFbxFile;
  trial.actorType = job.actorType;
  trial.repairs = job.repairs;
  trial.skeleton = std::make_shared<SkeletonState>();
  change(trial);
  ExtractSkeleton(trial);
  return MeasureSkins(trial, meshes, size);
}

class PlaceTeller {
 public:
  PlaceTeller(const ConversionJob& job, const std::vector<MeshFacts>& meshes, RigReport& report)
      : job_(job),
        skeleton_(*job.skeleton),
        meshes_(meshes),
        report_(report),
        size_(ModelSize(meshes, skeleton_)),
        gaps_(MeasureSkins(job, meshes, size_)) {}

  void Tell() {
    TellParentsNotBound();
    if (!TellScales()) {
      TellBones(findings::kBonesAstray, gaps_.atRest);
      TellSkins();
    }
    TellUnposedSkins();
    TellObjects();
    if (!skeleton_.bindPose) {
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

  /// How far the package has a bone from its place in the bind pose, at rest or by its bone space.
  Gap GapFrom(const scene::KFbxXMatrix& bound, const BoneNode& bone) const {
    Gap gap = GapBetween(bound, StoredPlace(bone, skeleton_));
    for (const BoneGap& off : gaps_.atRest) {
      if (off.bone == bone.id && off.gap.IsWorseThan(gap, size_)) gap = off.gap;
    }
    return gap;
  }

  /// Bones whose parent the bind pose lacks go astray for that reason, and take along what is below them.
  void TellParentsNotBound() {
    if (job_.repairs.rigidBones) return;
    std::set<int32_t> told;
    for (int32_t id = 1; id < skeleton_.bones.BoneCount(); ++id) {
      const KFbxNode* node = skeleton_.boneNodes[static_cast<size_t>(id)];
      const BoneNode& bone = *skeleton_.bones.FindById(id);
      const scene::KFbxXMatrix* bound = node && bone.weighted ? BoundMatrix(*node, skeleton_) : nullptr;
      if (!bound || BoundMatrix(*node->GetParent(), skeleton_)) continue;
      const Gap gap = GapFrom(*bound, bone);
      if (!gap.IsVisible(size_)) continue;
      report_.Add(findings::kParentNotBound, bone.name, {gap.Text(size_)});
      told.insert(id);
    }
    const auto isTold = [&](int32_t id) {
      const BoneNode* bone = skeleton_.bones.FindById(id);
      while (bone && !told.contains(bone->id)) bone = bone->parent;
      return bone != nullptr;
    };
    std::erase_if(gaps_.atRest, [&](const BoneGap& off) { return isTold(off.bone); });
    std::erase_if(gaps_.ofMeshes,
                  [&](const SkinGaps::OfMesh& mesh) { return mesh.isPosed && isTold(mesh.worst.bone); });
  }

  /// @return whether bones and posed skins are apart for nothing but the scales of bones
  bool TellScales() {
    std::vector<BoneGap> off = gaps_.atRest;
    for (const SkinGaps::OfMesh& mesh : gaps_.ofMeshes) {
      if (mesh.isPosed) off.push_back(mesh.worst);
    }
    if (off.empty() || job_.repairs.rigidBones) return false;
    const SkinGaps rigid =
        Try(job_, meshes_, size_, [](ConversionJob& trial) { trial.repairs.rigidBones = true; });
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
    if (job_.repairs.attachRigid) return;
    for (const MeshFacts& mesh : meshes_) {
      if (mesh.IsPosed(skeleton_) || mesh.FollowsAny() || mesh.points.empty()) continue;
      if (!Changes(mesh.node->GetGlobalFromDefaultTake(), size_)) continue;
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

  const ConversionJob& job_;
  const SkeletonState& skeleton_;
  const std::vector<MeshFacts>& meshes_;
  RigReport& report_;
  double size_;
  SkinGaps gaps_;
  bool anyMisplaced_ = false;
};

}  // namespace

void TellSkinPlaces(const ConversionJob& job, const std::vector<MeshFacts>& meshes, RigReport& report) {
  if (!meshes.empty()) PlaceTeller(job, meshes, report).Tell();
}

void TellStaticMeshes(const ConversionJob& job, const std::vector<MeshFacts>& meshes, RigReport& report) {
  bool needsSkeleton = job.actorType != ActorType::None;
  const double size = ModelSize(meshes, *job.skeleton);
  for (const MeshFacts& mesh : meshes) {
    if (HasClusters(*mesh.node)) needsSkeleton = true;
    if (!mesh.points.empty() && !job.repairs.attachRigid &&
        Changes(mesh.node->GetGlobalFromDefaultTake(), size)) {
      report.Add(findings::kPlaceLost, mesh.node->GetName());
    }
  }
  report.Add(needsSkeleton ? findings::kNoSkeleton : findings::kStaticModel);
}

}  // namespace ts3d
