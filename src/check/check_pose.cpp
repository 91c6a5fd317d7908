// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "check/finding_kinds.h"
#include "check/rig_check.h"
#include "scene/model/node.h"
#include "scene/model/pose.h"

namespace ts3d {
namespace {

using scene::KFbxNode;
using scene::KFbxVector4;
using scene::KFbxXMatrix;

/// Share of the rig's size below which nobody sees a distance.
constexpr double kVisibleShare = 0.01;

std::string PlaceText(const KFbxVector4& p) {
  return "(" + ShortNumber(p[0]) + ", " + ShortNumber(p[1]) + ", " + ShortNumber(p[2]) + ")";
}

/// Length of the diagonal of the box around all bones.
double BoneExtent(const SkeletonState& skeleton) {
  if (skeleton.boneNodes.empty()) return 0.0;
  KFbxVector4 low = RestMatrix(*skeleton.boneNodes[0], skeleton).GetT(), high = low;
  for (const KFbxNode* node : skeleton.boneNodes) {
    const KFbxVector4 p = RestMatrix(*node, skeleton).GetT();
    for (size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], p[axis]);
      high[axis] = std::max(high[axis], p[axis]);
    }
  }
  return (high - low).Length();
}

bool IsOne(double scale) { return std::abs(scale - 1.0) < 0.001; }

std::string ScaleText(const KFbxVector4& s) {
  const bool even =
      std::abs(s[0] - s[1]) < 0.001 * std::abs(s[0]) && std::abs(s[0] - s[2]) < 0.001 * std::abs(s[0]);
  return even ? ShortNumber(s[0]) : PlaceText(s);
}

void TellRootScale(RigCheck& check) {
  const SkeletonState& skeleton = *check.job.skeleton;
  const KFbxVector4& scale = skeleton.rootScale;
  if (IsOne(scale[0]) && IsOne(scale[1]) && IsOne(scale[2])) return;
  const BoneNode& root = *skeleton.bones.FindById(0);
  const KFbxVector4 meant = RestMatrix(*skeleton.boneNodes[0], skeleton).GetT();
  const double off = (root.translation - meant).Length();
  if (off > kVisibleShare * std::max(check.rigSize, meant.Length())) {
    check.report.Add(findings::kRootScale, root.name,
                     {ScaleText(scale), ScaleText(scale), PlaceText(root.translation), PlaceText(meant)});
  } else {
    check.report.Add(findings::kRootScaleHarmless, root.name, {ScaleText(scale)});
  }
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
  const int index = skeleton.bindPose ? skeleton.bindPose->Find(&node) : -1;
  return index >= 0 ? skeleton.bindPose->GetMatrix(index) : node.GetGlobalFromDefaultTake();
}

std::string ShortNumber(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.4g", value == 0.0 ? 0.0 : value);
  return text;
}

void CheckBindPose(RigCheck& check) {
  SkeletonState& skeleton = *check.job.skeleton;
  if (!skeleton.bindPose) return;
  const auto isBound = [&](const KFbxNode* node) {
    return node && (skeleton.bindPose->Find(node) >= 0 || skeleton.firstPoseOf.contains(node));
  };
  for (size_t id = 0; id < skeleton.boneNodes.size(); ++id) {
    const KFbxNode& node = *skeleton.boneNodes[id];
    const BoneNode& bone = *skeleton.bones.FindById(static_cast<int32_t>(id));
    if (!isBound(&node)) {
      check.report.Add(bone.weighted ? findings::kBoneNotBound : findings::kIdleBoneNotBound, bone.name);
    } else if (id > 0 && !isBound(node.GetParent())) {
      check.report.Add(findings::kParentNotBound, bone.name);
    }
  }
}

void CheckPose(RigCheck& check) {
  const SkeletonState& skeleton = *check.job.skeleton;
  if (skeleton.boneNodes.empty()) return;
  check.rigSize = BoneExtent(skeleton);
  TellRootScale(check);
  for (size_t id = 0; id < skeleton.boneNodes.size(); ++id) {
    const KFbxNode& node = *skeleton.boneNodes[id];
    if (Differ(RestMatrix(node, skeleton), node.GetGlobalFromDefaultTake(), check.rigSize)) {
      check.report.Add(findings::kPosedBones, skeleton.bones.FindById(static_cast<int32_t>(id))->name);
    }
  }
}

}  // namespace ts3d
