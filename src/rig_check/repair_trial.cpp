// SPDX-License-Identifier: MIT
#include "rig_check/repair_trial.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "base/vectors.h"
#include "core/mesh_filter.h"
#include "core/names.h"
#include "mesh/scene_walk.h"
#include "rig_check/bone_places.h"
#include "scene/model/scene.h"
#include "skeleton/bind_pose.h"
#include "skeleton/csf_writer.h"
#include "skeleton/rigid_meshes.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

using scene::KFbxCluster;
using scene::KFbxMesh;
using scene::KFbxNode;
using scene::KFbxVector4;
using scene::KFbxXMatrix;

/// The next skeleton node above `node`, extracted or not.
const KFbxNode* SkeletonAbove(const KFbxNode& node) {
  const KFbxNode* above = node.GetParent();
  while (above && !above->IsSkeleton()) above = above->GetParent();
  return above;
}

/// By what the file says, so that nothing is decoded.
bool HasPoints(const KFbxMesh& mesh) { return scene::ClaimedCount(mesh.GetRecord().Child("Vertices")) > 0; }

KFbxXMatrix Rigid(const KFbxVector4& translation, const KFbxVector4& euler) {
  return {translation, euler, {1, 1, 1}};
}

}  // namespace

RepairTrial::RepairTrial(const ModelSource& loaded, const RepairSettings& repairs)
    : settings_{.exclusionList = loaded.settings.exclusionList, .repairs = repairs},
      model_{loaded.scene, settings_, mute_, loaded.actorType, loaded.isFbxFile} {
  ExtractSkeleton(model_, skeleton_);
  size_ = MeasureSize();
}

size_t RepairTrial::LostBones() {
  std::unordered_set<const KFbxNode*> lost;
  const auto need = [&](const KFbxNode* bone) {
    if (bone && bone->IsSkeleton() && !skeleton_.boneOf.contains(bone)) lost.insert(bone);
  };
  ForEachCluster([&](const KFbxNode&, const KFbxCluster& cluster) { need(cluster.GetLink()); });
  ForEachMesh([&](const KFbxNode& node, const KFbxMesh& mesh) {
    if (!HasSkin(mesh)) need(SkeletonAbove(node));
  });
  return lost.size();
}

size_t RepairTrial::UnboundSkins() {
  size_t unbound = 0;
  std::unordered_set<const KFbxNode*> unposed;
  ForEachCluster([&](const KFbxNode& node, const KFbxCluster& cluster) {
    const auto linkBind = cluster.GetTransformLinkMatrix();
    const auto meshBind = cluster.GetTransformMatrix();
    if (!linkBind || !meshBind || !skeleton_.hasExtractedBones) return;
    const KFbxXMatrix link = WorldOf(*cluster.GetLink());
    unbound += Differ(link, *linkBind);
    // A mesh without an entry in the bind pose keeps its own space, wherever its bones are.
    if (BindPoseIndex(&node, model_.scene, skeleton_) >= 0) return;
    if (Differ(link * linkBind->Inverse() * *meshBind, {})) unposed.insert(&node);
  });
  return unbound + unposed.size();
}

size_t RepairTrial::StrayMeshes() {
  size_t stray = 0;
  ForEachMesh([&](const KFbxNode& node, const KFbxMesh& mesh) {
    if (HasSkin(mesh) || settings_.repairs.attachRigid) return;
    const bool isPosed = skeleton_.hasExtractedBones && BindPoseIndex(&node, model_.scene, skeleton_) >= 0;
    const bool leavesBone = skeleton_.hasExtractedBones && BoneAbove(node, skeleton_) > 0;
    stray += leavesBone || (!isPosed && Differ(WorldOf(node), {}));
  });
  return stray;
}

size_t RepairTrial::MisplacedBones() {
  std::unordered_set<int32_t> used;
  const auto use = [&](const KFbxNode* bone) {
    if (const auto found = skeleton_.boneOf.find(bone); found != skeleton_.boneOf.end())
      used.insert(found->second);
  };
  ForEachCluster([&](const KFbxNode&, const KFbxCluster& cluster) { use(cluster.GetLink()); });
  ForEachMesh([&](const KFbxNode& node, const KFbxMesh& mesh) {
    if (HasSkin(mesh)) return;
    if (const KFbxNode* above = SkeletonAbove(node)) return use(above);
    used.insert(0);
  });
  std::vector<KFbxXMatrix> composed(skeleton_.boneNodes.size());
  size_t misplaced = 0;
  for (const BoneNode* bone : skeleton_.bones.PreOrder()) {
    const auto id = static_cast<size_t>(bone->id);
    if (id >= composed.size()) continue;
    composed[id] = Rigid(bone->translation, bone->rotationEuler);
    if (bone->parent->id >= 0) composed[id] = composed[static_cast<size_t>(bone->parent->id)] * composed[id];
    if (!used.contains(bone->id)) continue;
    const KFbxXMatrix world = skeleton_.actorTurn * WorldOf(*skeleton_.boneNodes[id]);
    const KFbxXMatrix space = Rigid(bone->boneSpaceTranslation, bone->boneSpaceRotationEuler);
    misplaced += Differ(composed[id], Rigid(world.GetT(), world.GetR())) || Differ(composed[id] * space, {});
  }
  return misplaced;
}

void RepairTrial::ForEachMesh(const VisitMesh& visit) {
  for (int i = 0; i < model_.scene.GetRootNode()->GetChildCount(); ++i) {
    ForEachMeshNode(*model_.scene.GetRootNode()->GetChild(i), [&](const KFbxNode& node) {
      const KFbxMesh* mesh = node.GetMesh();
      if (skipThisMesh(SanitizeMeshName(node.GetName()), model_.Filter()) || !mesh || !HasPoints(*mesh))
        return;
      visit(node, *mesh);
    });
  }
}

void RepairTrial::ForEachCluster(const VisitCluster& visit) {
  ForEachMesh([&](const KFbxNode& node, const KFbxMesh& mesh) {
    for (int s = 0; s < mesh.GetSkinCount(); ++s) {
      const scene::KFbxSkin& skin = *mesh.GetSkin(s);
      for (int c = 0; c < skin.GetClusterCount(); ++c) {
        const KFbxCluster& cluster = *skin.GetCluster(c);
        if (cluster.GetLink() && cluster.GetClaim() > 0) visit(node, cluster);
      }
    }
  });
}

KFbxXMatrix RepairTrial::WorldOf(const KFbxNode& node) {
  if (!skeleton_.hasExtractedBones) return node.GetGlobalFromDefaultTake();
  return BindWorld(node, model_.scene, skeleton_);
}

bool RepairTrial::Differ(const KFbxXMatrix& a, const KFbxXMatrix& b) const {
  return DifferVisibly(a, b, size_);
}

/// Of places that are all one, a thousandth of their distance
/// from the origin. Without bones that of the meshes.
double RepairTrial::MeasureSize() {
  constexpr double kSmallest = 1e-6;
  std::vector<KFbxVector4> places;
  for (const KFbxNode* node : skeleton_.boneNodes) places.push_back(WorldOf(*node).GetT());
  if (places.empty()) {
    ForEachMesh([&](const KFbxNode& node, const KFbxMesh&) { places.push_back(WorldOf(node).GetT()); });
  }
  if (places.empty()) return kSmallest;
  base::Box box;
  double farthest = 0.0;
  for (const KFbxVector4& place : places) {
    farthest = std::max(farthest, (place - KFbxVector4(0, 0, 0)).Length());
    box.Add({place[0], place[1], place[2]});
  }
  return std::max({box.Diagonal(), farthest / 1000.0, kSmallest});
}

}  // namespace ts3d
