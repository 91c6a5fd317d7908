// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "rig_check/bone_places.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_faults.h"

namespace ts3d {
namespace {

using scene::KFbxVector4;

constexpr double kVisibleShare = 0.01;

bool IsOne(double scale) { return std::abs(scale - 1.0) < 0.001; }

std::string PlaceText(const KFbxVector4& p) {
  return "(" + ShortNumber(p[0]) + ", " + ShortNumber(p[1]) + ", " + ShortNumber(p[2]) + ")";
}

std::string ScaleText(const KFbxVector4& s) {
  const bool even =
      std::abs(s[0] - s[1]) < 0.001 * std::abs(s[0]) && std::abs(s[0] - s[2]) < 0.001 * std::abs(s[0]);
  return even ? ShortNumber(s[0]) : PlaceText(s);
}

}  // namespace

void TellRootScale(const RepairSettings& repairs, const SkeletonState& skeleton,
                   const std::vector<MeshFacts>& meshes, RigReport& report) {
  const KFbxVector4& scale = skeleton.rootScale;
  if (repairs.rigidBones || (IsOne(scale[0]) && IsOne(scale[1]) && IsOne(scale[2]))) return;
  const BoneNode& root = *skeleton.bones.FindById(0);
  const KFbxVector4 meant = StoredPlace(root, skeleton).GetT();
  const double off = (root.translation - meant).Length();
  if (off > kVisibleShare * std::max(ModelSize(meshes, skeleton), meant.Length())) {
    report.Add(findings::kRootScale, root.name,
               {ScaleText(scale), ScaleText(scale), PlaceText(root.translation), PlaceText(meant)});
  } else {
    report.Add(findings::kRootScaleHarmless, root.name, {ScaleText(scale)});
  }
}

}  // namespace ts3d
