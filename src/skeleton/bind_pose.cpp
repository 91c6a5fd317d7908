// SPDX-License-Identifier: MIT
#include "skeleton/bind_pose.h"

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

namespace {

void IndexBindPoses(const scene::KFbxScene& scene, SkeletonState& skeleton) {
  for (int i = 0; i < scene.GetPoseCount(); ++i) {
    const scene::KFbxPose* pose = scene.GetPose(i);
    if (!pose->IsBindPose()) continue;
    for (int k = 0; k < pose->GetCount(); ++k) skeleton.firstPoseOf.emplace(pose->GetNode(k), pose);
  }
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

}  // namespace ts3d
