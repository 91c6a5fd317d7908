// SPDX-License-Identifier: MIT
#include "skeleton/bind_pose.h"

#include "skeleton/bind_from_skin.h"

namespace ts3d {

void ChooseBindPose(const scene::KFbxScene& scene, SkeletonState& skeleton) {
  int largest = 0;
  bool tie = false;
  for (int i = 0; i < scene.GetPoseCount(); ++i) {
    const scene::KFbxPose* pose = scene.GetPose(i);
    if (!pose->IsBindPose()) continue;
    if (pose->GetCount() > largest) {
      largest = pose->GetCount();
      skeleton.bindPose = pose;
      tie = false;
    } else if (pose->GetCount() == largest) {
      tie = true;
    }
  }
  if (skeleton.bindPose && tie) skeleton.bindPoseAmbiguous = true;
}

bool TakeBindPoseOfSkins(const scene::KFbxScene& scene, SkeletonState& skeleton) {
  skeleton.skinPose = BindPoseOfSkins(scene);
  skeleton.bindPose = skeleton.skinPose.get();
  return skeleton.bindPose != nullptr;
}

namespace {

void IndexBindPoses(const scene::KFbxScene& scene, SkeletonState& skeleton) {
  for (int i = 0; i < scene.GetPoseCount(); ++i) {
    const scene::KFbxPose* pose = scene.GetPose(i);
    if (!pose->IsBindPose()) continue;
    for (int k = 0; k < pose->GetCount(); ++k) skeleton.firstPoseOf.emplace(pose->GetNode(k), pose);
  }
}

/// Every bind pose counts when the choice was ambiguous, but none is moved on to.
const scene::KFbxXMatrix* FindBindMatrix(const scene::KFbxNode* node, const scene::KFbxScene& scene,
                                         SkeletonState& skeleton) {
  if (!skeleton.bindPose) return nullptr;
  const int index = skeleton.bindPose->Find(node);
  if (index >= 0) return &skeleton.bindPose->GetMatrix(index);
  if (!skeleton.bindPoseAmbiguous) return nullptr;
  if (skeleton.firstPoseOf.empty()) IndexBindPoses(scene, skeleton);
  const auto found = skeleton.firstPoseOf.find(node);
  return found == skeleton.firstPoseOf.end() ? nullptr : &found->second->GetMatrix(found->second->Find(node));
}

/// The next ancestor of `node` that a bind pose has, or null. The first bone's ancestors do not count for
/// bones: the skeleton file takes it as it stands now when the bind pose lacks it. Answers are kept, so that
/// a long chain of bones is not climbed once for each of them.
const scene::KFbxNode* NextBound(const scene::KFbxNode& node, const scene::KFbxScene& scene,
                                 SkeletonState& skeleton) {
  std::vector<const scene::KFbxNode*> passed;
  const scene::KFbxNode* next = &node;
  const scene::KFbxNode* bound = nullptr;
  while (next) {
    if (const auto known = skeleton.nextBound.find(next); known != skeleton.nextBound.end()) {
      bound = known->second;
      break;
    }
    passed.push_back(next);
    if (next == skeleton.firstBoneNode) break;
    next = next->GetParent();
    if (next && FindBindMatrix(next, scene, skeleton)) {
      bound = next;
      break;
    }
  }
  for (const scene::KFbxNode* each : passed) skeleton.nextBound[each] = bound;
  return bound;
}

}  // namespace

int BindPoseIndex(const scene::KFbxNode* node, const scene::KFbxScene& scene, SkeletonState& skeleton) {
  if (!skeleton.bindPose) return -1;
  const int index = skeleton.bindPose->Find(node);
  if (index >= 0 || !skeleton.bindPoseAmbiguous) return index;
  if (skeleton.firstPoseOf.empty()) IndexBindPoses(scene, skeleton);
  const auto found = skeleton.firstPoseOf.find(node);
  if (found == skeleton.firstPoseOf.end()) return -1;
  skeleton.bindPose = found->second;
  return skeleton.bindPose->Find(node);
}

const scene::KFbxXMatrix& BindMatrix(int index, const SkeletonState& skeleton) {
  return skeleton.bindPose->GetMatrix(index);
}

scene::KFbxXMatrix BindWorld(const scene::KFbxNode& node, const scene::KFbxScene& scene,
                             SkeletonState& skeleton) {
  if (const int index = BindPoseIndex(&node, scene, skeleton); index >= 0) return BindMatrix(index, skeleton);
  const scene::KFbxNode* bound = NextBound(node, scene, skeleton);
  if (!bound) return node.GetGlobalFromDefaultTake();
  return *FindBindMatrix(bound, scene, skeleton) * bound->GetGlobalFromDefaultTake().Inverse() *
         node.GetGlobalFromDefaultTake();
}

}  // namespace ts3d
