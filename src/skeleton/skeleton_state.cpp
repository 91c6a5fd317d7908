// SPDX-License-Identifier: MIT
#include "skeleton/skeleton_state.h"

namespace ts3d {

void SkeletonState::ForgetScene() {
  bindPose = nullptr;
  skinPose.reset();
  boneNodes.clear();
  boneOf.clear();
  firstPoseOf.clear();
  nextBound.clear();
  firstBoneNode = nullptr;
}

}  // namespace ts3d
