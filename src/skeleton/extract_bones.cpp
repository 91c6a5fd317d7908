// SPDX-License-Identifier: MIT
#include "skeleton/extract_bones.h"

#include <cmath>
#include <vector>

#include "core/names.h"
#include "scene/math/angles.h"
#include "scene/math/nearest_rotation.h"
#include "skeleton/bind_pose.h"
#include "skeleton/top_bones.h"

namespace ts3d {
namespace {

using scene::KFbxNode;
using scene::KFbxVector4;
using scene::KFbxXMatrix;

constexpr double kLargestScaleDifference = 0.01;

/// Quarter turn about X that stands an actor up, around the position of `m`.
KFbxXMatrix TurnAround(const KFbxXMatrix& m) {
  const KFbxVector4 p = m.GetT();
  return KFbxXMatrix::Translation(p) * KFbxXMatrix::Rotation({90, 0, 0}) * KFbxXMatrix::Translation(-p);
}

class BoneExtractor {
 public:
  BoneExtractor(const ModelSource& model, SkeletonState& skeleton)
      : model_(model), skeleton_(skeleton), scene_(model.scene) {}

  void Extract(const KFbxNode& top) {
    // A list of its own instead of recursion: node trees may be deeper than the call stack.
    struct Pending {
      const KFbxNode* node;
      BoneNode* parent;
    };
    std::vector<Pending> pending{{&top, &TopParent()}};
    while (!pending.empty()) {
      auto [node, parent] = pending.back();
      pending.pop_back();
      if (!node->GetNodeAttribute() && !model_.settings.repairs.openGroups) continue;
      if (node->IsSkeleton()) parent = ExtractBone(*node, *parent);
      for (int i = node->GetChildCount(); i-- > 0;) pending.push_back({node->GetChild(i), parent});
    }
  }

  void AddJoiningRoot(const std::string& name, const KFbxNode& firstTop) {
    const KFbxNode& sceneRoot = *scene_.GetRootNode();
    skeleton_.hasJoiningRoot = true;
    skeleton_.firstBoneNode = &sceneRoot;
    BoneNode& bone = AddBone(sceneRoot, skeleton_.bones.Root());
    bone.name = name;
    // The actor turns where it would turn without the new root.
    if (model_.actorType != ActorType::None) {
      skeleton_.actorTurn = TurnAround(BindWorld(firstTop, scene_, skeleton_));
    }
    SetTransforms(bone, skeleton_.actorTurn);
  }

 private:
  BoneNode& TopParent() {
    BoneNode& root = skeleton_.bones.Root();
    return skeleton_.hasJoiningRoot ? *root.children.front() : root;
  }

  BoneNode& AddBone(const KFbxNode& node, BoneNode& parent) {
    BoneNode& bone = skeleton_.bones.AddChild(parent);
    skeleton_.boneNodes.push_back(&node);
    skeleton_.boneOf.emplace(&node, bone.id);
    return bone;
  }

  /// @return the parent bone for the node's children
  BoneNode* ExtractBone(const KFbxNode& node, BoneNode& parent) {
    if (&parent == &skeleton_.bones.Root() && !parent.children.empty()) {
      // Once in the life of the process, not once in a conversion.
      model_.status.SendOnce(Notice::SeveralRoots);
      return &parent;
    }
    if (!skeleton_.firstBoneNode) skeleton_.firstBoneNode = &node;
    BoneNode& bone = AddBone(node, parent);
    bone.name = SanitizeMeshName(node.GetName());
    KFbxXMatrix m = BoneTransform(node, bone);
    if (model_.settings.repairs.rigidBones || skeleton_.hasJoiningRoot) {
      m = RigidTransform(node, bone);
    } else {
      m.SetT(m.GetT() * skeleton_.rootScale);
    }
    SetTransforms(bone, m);
    return &bone;
  }

  /// The bone's transform relative to its parent, at bind time where the bind pose tells it. Bone 0 also
  /// settles the root scale and the actor's turn.
  KFbxXMatrix BoneTransform(const KFbxNode& node, const BoneNode& bone) {
    const int index = BindPoseIndex(&node, scene_, skeleton_);
    const bool isBound = skeleton_.bindPose && index >= 0;
    KFbxXMatrix m = isBound ? BindMatrix(index, skeleton_) : DefaultTransform(node, bone);
    if (skeleton_.bindPose && !isBound) model_.status.Send(Notice::BoneNotInBindPose, node.GetName());
    if (isBound && skeleton_.bindPose->IsLocalMatrix(index))
      model_.status.Send(Notice::LocalMatrix, bone.name);
    // Looking up the parent may move on to another bind pose, so it comes after the node's own matrix.
    const int parentIndex = isBound ? BindPoseIndex(NodeAbove(node, bone), scene_, skeleton_) : -1;
    if (bone.id == 0) {
      skeleton_.rootTransform = node.GetGlobalFromDefaultTake();
      skeleton_.rootScale = (isBound ? m : skeleton_.rootTransform).GetS();
      m = StandUp(m, isBound);
    }
    if (isBound) CheckScale(bone, m.GetS());
    return parentIndex >= 0 && bone.id > 0 ? BindMatrix(parentIndex, skeleton_).Inverse() * m : m;
  }

  /// The bone's transform relative to its parent bone without any scale, so that every bone stands where it
  /// stands in the world. Shear goes with the scale that caused it.
  KFbxXMatrix RigidTransform(const KFbxNode& node, const BoneNode& bone) {
    const KFbxXMatrix world = skeleton_.actorTurn * BindWorld(node, scene_, skeleton_);
    const KFbxXMatrix rigid(world.GetT(), NearestRotationIfSheared(world).GetR(), {1, 1, 1});
    return bone.id > 0 ? BoneSpace(*bone.parent) * rigid : rigid;
  }

  static KFbxXMatrix BoneSpace(const BoneNode& bone) {
    return {bone.boneSpaceTranslation, bone.boneSpaceRotationEuler, {1, 1, 1}};
  }

  /// The node that the bone's transform is relative to. Opened groups between two bones are no bones, so that
  /// their transforms have to be part of the lower one's.
  const KFbxNode* NodeAbove(const KFbxNode& node, const BoneNode& bone) const {
    if (!model_.settings.repairs.openGroups || bone.id == 0) return node.GetParent();
    return skeleton_.boneNodes[static_cast<size_t>(bone.parent->id)];
  }

  KFbxXMatrix DefaultTransform(const KFbxNode& node, const BoneNode& bone) const {
    if (&node == skeleton_.firstBoneNode) return node.GetGlobalFromDefaultTake();
    if (const KFbxNode* above = NodeAbove(node, bone); above != node.GetParent()) {
      return above->GetGlobalFromDefaultTake().Inverse() * node.GetGlobalFromDefaultTake();
    }
    const KFbxXMatrix local = node.GetLocalFromDefaultTake();
    return {local.GetT(), local.GetR(), local.GetS()};
  }

  /// Bone 0 of an actor is turned up. A root that only the bind pose lacks stays as it lies; its meshes are
  /// turned all the same.
  KFbxXMatrix StandUp(const KFbxXMatrix& m, bool isBound) {
    if (model_.actorType == ActorType::None) return m;
    skeleton_.actorTurn = TurnAround(m);
    return isBound || !skeleton_.bindPose ? skeleton_.actorTurn * m : m;
  }

  static void SetTransforms(BoneNode& bone, const KFbxXMatrix& m) {
    bone.translation = m.GetT();
    bone.rotationEuler = m.GetR();
    bone.rotation = EulerToQuaternion(bone.rotationEuler);
    KFbxXMatrix space = m.Inverse();
    if (bone.id > 0) space = space * BoneSpace(*bone.parent);
    bone.boneSpaceTranslation = space.GetT();
    bone.boneSpaceRotationEuler = space.GetR();
    bone.boneSpaceRotation = EulerToQuaternion(bone.boneSpaceRotationEuler);
  }

  void CheckScale(const BoneNode& bone, const KFbxVector4& s) {
    if (s[0] < 0.0 || s[1] < 0.0 || s[2] < 0.0) {
      model_.status.Send(Notice::MirroredBone, bone.name);
    } else if (std::abs(s[0] - s[1]) > kLargestScaleDifference ||
               std::abs(s[0] - s[2]) > kLargestScaleDifference ||
               std::abs(s[1] - s[2]) > kLargestScaleDifference) {
      model_.status.Send(Notice::UnevenScale, bone.name);
    }
  }

  const ModelSource& model_;
  SkeletonState& skeleton_;
  const scene::KFbxScene& scene_;
};

}  // namespace

scene::KFbxQuaternion EulerToQuaternion(const KFbxVector4& degrees) {
  constexpr double kHalfDegree = 3.141592653589793 / 180.0 * 0.5;
  const double a = degrees[0] * kHalfDegree, b = degrees[1] * kHalfDegree, c = degrees[2] * kHalfDegree;
  const auto [sa, ca] = scene::SinCos(a);
  const auto [sb, cb] = scene::SinCos(b);
  const auto [sc, cc] = scene::SinCos(c);
  return {sa * cb * cc - ca * sb * sc, ca * sb * cc + sa * cb * sc, ca * cb * sc - sa * sb * cc,
          -(ca * cb * cc + sa * sb * sc)};
}

void JoinRoots(const ModelSource& model, SkeletonState& skeleton) {
  const std::vector<const KFbxNode*> tops = FindTopBones(model.scene, model.settings.repairs.openGroups);
  if (tops.size() < 2) return;
  BoneExtractor(model, skeleton).AddJoiningRoot(NameForNewRoot(model.scene), *tops.front());
}

void ExtractBones(const scene::KFbxNode& node, const ModelSource& model, SkeletonState& skeleton) {
  BoneExtractor(model, skeleton).Extract(node);
}

}  // namespace ts3d
