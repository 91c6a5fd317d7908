// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <set>

#include "actor/rigid_transform.h"
#include "core/names.h"
#include "inspect/check_actor.h"

namespace actor {
namespace {

constexpr double kTolerance = 1e-3;      // of the skeleton's size, or of a half turn
constexpr double kSmallestScale = 1e-6;  // a scale of 100 shows as 10000
constexpr double kUnitTolerance = 0.01;

/// How the composed skeleton differs from where bone space has the bones.
struct Comparison {
  std::vector<Double3> offsets;  ///< by bone
  size_t firstTurned = 0;        ///< the number of bones when none is
  double size = 0.0;             ///< largest distance from the first bone
};

Comparison Compare(const Skeleton& skeleton) {
  Comparison result;
  result.firstTurned = skeleton.bones.size();
  const std::vector<RigidTransform> places = ComposeSkeleton(skeleton);
  const Double3 first = BindTransform(skeleton.bones[0]).translation;
  for (size_t i = 0; i < places.size(); ++i) {
    const RigidTransform bind = BindTransform(skeleton.bones[i]);
    result.offsets.push_back(base::Minus(places[i].translation, bind.translation));
    result.size = std::max(result.size, base::Length(base::Minus(bind.translation, first)));
    if (TurnBetween(places[i], bind) > kTolerance) result.firstTurned = std::min(result.firstTurned, i);
  }
  // A skeleton of one bone still has a size to compare with: its distance from the origin.
  if (result.size == 0.0) result.size = std::max(base::Length(first), 1.0);
  return result;
}

/// The first bone that is not shifted as its parent is; the number of bones when there is none.
size_t FirstAstray(const Skeleton& skeleton, const Comparison& compared) {
  for (size_t i = 0; i < skeleton.bones.size(); ++i) {
    const int32_t parent = skeleton.bones[i].parent;
    if (parent < 0) continue;
    const Double3 difference =
        base::Minus(compared.offsets[i], compared.offsets[static_cast<size_t>(parent)]);
    if (base::Length(difference) > kTolerance * compared.size) return i;
  }
  return skeleton.bones.size();
}

/// Whether a scale of the top bone explains its offset: it lies on the line from the origin to the bone.
bool IsScaled(const Bone& bone, const Double3& offset, double size) {
  const Double3 bind = BindTransform(bone).translation;
  const double length = base::Length(bind);
  if (length == 0.0) return false;
  const double along = (offset[0] * bind[0] + offset[1] * bind[1] + offset[2] * bind[2]) / length / length;
  // The offset of a mirrored, collapsed or exploded bone lies on that line as well.
  if (!(1.0 + along > kSmallestScale && 1.0 + along < 1.0 / kSmallestScale)) return false;
  const Double3 line{along * bind[0], along * bind[1], along * bind[2]};
  return base::Length(base::Minus(offset, line)) <= kTolerance * (size + base::Length(offset));
}

void CheckTopBone(const Bone& bone, const Double3& offset, double size, Findings& findings) {
  if (base::Length(offset) <= kTolerance * size) return;
  if (IsScaled(bone, offset, size)) {
    AddProblem(
        findings, "root-scale-offset", Subject::Bone, bone.name,
        "is scaled in the model: the resting skeleton stands beside the mesh, all of its bones equally far",
        "convert again with --rigid-bones, or apply the scale to the model before the export");
  } else {
    AddProblem(findings, "bone-space", Subject::Bone, bone.name,
               "and all below it stand away from the mesh, and no scale of the bone explains it",
               "bind the model again in its rest pose, then export and convert it");
  }
}

void CheckNames(const Skeleton& skeleton, Findings& findings) {
  std::set<std::string> seen;
  for (const Bone& bone : skeleton.bones) {
    if (seen.insert(bone.name).second) continue;
    AddProblem(findings, "same-bone-name", Subject::Bone, bone.name,
               "is the name of several bones; only the last is found by it",
               "give every bone in the model a unique name");
  }
}

bool IsUnit(const Quaternion& q) {
  double square = 0.0;
  for (const float number : q) square += static_cast<double>(number) * static_cast<double>(number);
  return std::abs(std::sqrt(square) - 1.0) <= kUnitTolerance;
}

void CheckRotations(const Skeleton& skeleton, Findings& findings) {
  size_t wrong = 0;
  const Bone* first = nullptr;
  for (const Bone& bone : skeleton.bones) {
    if (IsUnit(bone.rotation) && IsUnit(bone.boneSpaceRotation)) continue;
    if (wrong++ == 0) first = &bone;
  }
  if (!first) return;
  AddProblem(findings, "bad-rotation", Subject::Bone, first->name,
             "has a rotation that is not a valid one; it distorts the mesh" +
                 (wrong > 1 ? " (and so have " + std::to_string(wrong - 1) + " other bones)" : std::string()),
             "look for bones with a scale of 0 in the model");
}

}  // namespace

void CheckSkeleton(const Skeleton& skeleton, Findings& findings) {
  if (skeleton.bones.empty()) return;
  CheckNames(skeleton, findings);
  CheckRotations(skeleton, findings);
  const Comparison compared = Compare(skeleton);
  const size_t count = skeleton.bones.size();
  if (const size_t bad = std::min(FirstAstray(skeleton, compared), compared.firstTurned); bad < count) {
    AddProblem(findings, "bone-space", Subject::Bone, skeleton.bones[bad].name,
               "rests elsewhere than the mesh was bound to it, so the mesh is distorted there",
               "bind the model again in its rest pose without scaled bones, then export and convert it");
    return;
  }
  for (size_t i = 0; i < count; ++i) {
    if (skeleton.bones[i].parent < 0) {
      CheckTopBone(skeleton.bones[i], compared.offsets[i], compared.size, findings);
    }
  }
}

}  // namespace actor
