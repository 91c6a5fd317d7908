// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "base/vectors.h"
#include "rig_check/bone_places.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_check.h"
#include "scene/model/node.h"
#include "scene/model/pose.h"

namespace ts3d {
namespace {

using scene::KFbxNode;
using scene::KFbxVector4;
using scene::KFbxXMatrix;

/// Length of the diagonal of the box around all bones.
double BoneExtent(const SkeletonState& skeleton) {
  base::Box box;
  for (const KFbxNode* node : skeleton.boneNodes) {
    const KFbxVector4 p = RestMatrix(*node, skeleton).GetT();
    box.Add({p[0], p[1], p[2]});
  }
  return box.Diagonal();
}

/// Whether the two differ by more than rounding, for a rig of that size.
bool Differ(const KFbxXMatrix& a, const KFbxXMatrix& b, double size) {
  constexpr double kRounding = 0.001;
  if ((a.GetT() - b.GetT()).Length() > kRounding * size) return true;
  for (size_t axis = 0; axis < 3; ++axis) {
    double difference = 0.0, length = 0.0;
    for (size_t i = 4 * axis; i < 4 * axis + 3; ++i) {
      difference = std::max(difference, std::abs(a.At(i) - b.At(i)));
      length = std::max(length, std::abs(a.At(i)));
    }
    if (difference > 10 * kRounding * length) return true;
  }
  return false;
}

}  // namespace

const KFbxXMatrix& RestMatrix(const KFbxNode& node, const SkeletonState& skeleton) {
  const KFbxXMatrix* bound = BoundMatrix(node, skeleton);
  return bound ? *bound : node.GetGlobalFromDefaultTake();
}

void CheckPose(RigCheck& check) {
  const SkeletonState& skeleton = check.skeleton;
  if (skeleton.boneNodes.empty()) return;
  check.rigSize = BoneExtent(skeleton);
  for (size_t id = 0; id < skeleton.boneNodes.size(); ++id) {
    const KFbxNode& node = *skeleton.boneNodes[id];
    if (Differ(RestMatrix(node, skeleton), node.GetGlobalFromDefaultTake(), check.rigSize)) {
      check.report.Add(findings::kPosedBones, skeleton.bones.FindById(static_cast<int32_t>(id))->name);
    }
  }
}

}  // namespace ts3d
