// SPDX-License-Identifier: MIT
#include "rig_check/skin_gaps.h"

#include <map>
#include <set>

#include "scene/model/mesh.h"
#include "scene/model/pose.h"
#include "skeleton/bind_pose.h"
#include "skeleton/bone_influences.h"

namespace ts3d {
namespace {

using scene::KFbxCluster;
using scene::KFbxNode;
using scene::KFbxXMatrix;

class SkinMeasure {
 public:
  SkinMeasure(const ModelSource& model, SkeletonState& skeleton, double size)
      : model_(model), skeleton_(skeleton), size_(size), places_(skeleton_.boneNodes.size()) {
    for (size_t id = 0; id < places_.size(); ++id) {
      places_[id] = StoredPlace(*skeleton_.bones.FindById(static_cast<int32_t>(id)), skeleton_);
    }
  }

  void Add(const MeshFacts& mesh) {
    const bool isPosed = mesh.IsPosed(skeleton_);
    BoneGap worst;
    const scene::KFbxMesh& skinned = *mesh.node->GetMesh();
    for (int s = 0; s < skinned.GetSkinCount(); ++s) {
      const scene::KFbxSkin& skin = *skinned.GetSkin(s);
      for (int c = 0; c < skin.GetClusterCount(); ++c) {
        const KFbxCluster& cluster = *skin.GetCluster(c);
        const int32_t bone = BoneOf(cluster);
        if (!mesh.Follows(bone)) continue;
        followed_.insert(bone);
        const KFbxXMatrix& place = places_[static_cast<size_t>(bone)];
        KeepWorse(worst, {bone, GapBetween(place, PlaceInSkin(cluster, mesh, isPosed))});
        if (const auto bound = cluster.GetTransformLinkMatrix()) {
          KeepWorse(fromBound_[bone], {bone, GapBetween(PlaceInPose(*cluster.GetLink(), mesh.pose), *bound)});
        }
      }
    }
    if (worst.gap.IsVisible(size_)) gaps_.ofMeshes.push_back({&mesh, isPosed, worst});
  }

  SkinGaps Finish() {
    for (const auto& [bone, worst] : fromBound_) {
      if (!worst.gap.IsVisible(size_)) continue;
      const bool isBound = BoundMatrix(*skeleton_.boneNodes[static_cast<size_t>(bone)], skeleton_) != nullptr;
      (isBound ? gaps_.fromBound : gaps_.fromPresent).push_back(worst);
    }
    MeasureRest();
    return std::move(gaps_);
  }

 private:
  /// The bone that `cluster` follows; -1 where it gets the weights of another one by its name, which is told
  /// apart from this.
  int32_t BoneOf(const KFbxCluster& cluster) const {
    if (!cluster.GetLink()) return -1;
    std::string name;
    const int32_t bone = BoneOfLink(*cluster.GetLink(), model_, skeleton_, name);
    const auto id = static_cast<size_t>(bone);
    return bone >= 0 && id < places_.size() && skeleton_.boneNodes[id] == cluster.GetLink() ? bone : -1;
  }

  /// Where the points of a mesh, as they are stored, have the bone that they follow.
  KFbxXMatrix PlaceInSkin(const KFbxCluster& cluster, const MeshFacts& mesh, bool isPosed) {
    const KFbxNode& link = *cluster.GetLink();
    if (isPosed) return PlaceInPose(link, mesh.pose);
    const KFbxXMatrix meshBind = cluster.GetTransformMatrix().value_or(mesh.node->GetGlobalFromDefaultTake());
    return meshBind.Inverse() * cluster.GetTransformLinkMatrix().value_or(link.GetGlobalFromDefaultTake());
  }

  KFbxXMatrix PlaceInPose(const KFbxNode& link, const scene::KFbxPose* pose) {
    if (const int index = pose ? pose->Find(&link) : -1; index >= 0) return pose->GetMatrix(index);
    return BindWorld(link, model_.scene, skeleton_);
  }

  /// Puts the bones together as a runtime does, from the root on, which may be elsewhere as a whole.
  void MeasureRest() {
    std::vector<KFbxXMatrix> rest;
    for (size_t id = 0; id < places_.size(); ++id) {
      const BoneNode& bone = *skeleton_.bones.FindById(static_cast<int32_t>(id));
      const KFbxXMatrix own(bone.translation, bone.rotationEuler, {1, 1, 1});
      rest.push_back(id == 0 ? places_[0] : rest[static_cast<size_t>(bone.parent->id)] * own);
      const Gap gap = GapBetween(rest[id], places_[id]);
      if (followed_.contains(bone.id) && gap.IsVisible(size_)) gaps_.atRest.push_back({bone.id, gap});
    }
  }

  void KeepWorse(BoneGap& worst, const BoneGap& other) const {
    if (worst.bone < 0 || other.gap.IsWorseThan(worst.gap, size_)) worst = other;
  }

  const ModelSource& model_;
  SkeletonState& skeleton_;
  double size_;
  std::vector<KFbxXMatrix> places_;
  std::map<int32_t, BoneGap> fromBound_;
  std::set<int32_t> followed_;
  SkinGaps gaps_;
};

}  // namespace

SkinGaps MeasureSkins(const ModelSource& model, SkeletonState& skeleton, const std::vector<MeshFacts>& meshes,
                      double size) {
  SkinMeasure measure(model, skeleton, size);
  for (const MeshFacts& mesh : meshes) measure.Add(mesh);
  return measure.Finish();
}

}  // namespace ts3d
