// SPDX-License-Identifier: MIT
#include "rig_check/bone_places.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "scene/math/nearest_rotation.h"
#include "scene/model/pose.h"

namespace ts3d {
namespace {

using scene::KFbxVector4;
using scene::KFbxXMatrix;

/// What nobody sees: an angle in degrees, a share of the model's size or of a scale.
constexpr double kSmallAngle = 0.2, kSmallShare = 0.004;

double AngleBetweenTurns(const KFbxXMatrix& a, const KFbxXMatrix& b) {
  const KFbxXMatrix turnA = KFbxXMatrix::Rotation(a.GetR()), turnB = KFbxXMatrix::Rotation(b.GetR());
  double sum = 0.0;
  for (size_t i = 0; i < 12; ++i) sum += (turnA.At(i) - turnB.At(i)) * (turnA.At(i) - turnB.At(i));
  return 2.0 * std::asin(std::min(1.0, std::sqrt(sum / 8.0))) * 180.0 / std::numbers::pi;
}

/// What shear has left no rotation of its own may be read as the one that keeps its x axis, or as the nearest.
double AngleBetween(const KFbxXMatrix& a, const KFbxXMatrix& b) {
  const double angle = AngleBetweenTurns(a, b);
  if (angle <= kSmallAngle) return angle;
  const KFbxXMatrix nearA = NearestRotationIfSheared(a), nearB = NearestRotationIfSheared(b);
  return std::min(
      {angle, AngleBetweenTurns(a, nearB), AngleBetweenTurns(nearA, b), AngleBetweenTurns(nearA, nearB)});
}

}  // namespace

bool Gap::IsVisible(double size) const { return degrees > kSmallAngle || distance > kSmallShare * size; }

bool Gap::IsWorseThan(const Gap& other, double size) const {
  const auto badness = [size](const Gap& gap) {
    return std::max(gap.degrees / kSmallAngle, size > 0.0 ? gap.distance / (kSmallShare * size) : 0.0);
  };
  return badness(*this) > badness(other);
}

std::string Gap::Text(double size) const {
  std::string text = ShortNumber(degrees) + " degrees and " + ShortNumber(distance);
  char share[60];
  std::snprintf(share, sizeof share, " (%.1f %% of the model's size)", 100.0 * distance / size);
  return size > 0.0 ? text + share : text;
}

Gap GapBetween(const KFbxXMatrix& a, const KFbxXMatrix& b) {
  return {AngleBetween(a, b), (a.GetT() - b.GetT()).Length()};
}

bool DifferVisibly(const KFbxXMatrix& a, const KFbxXMatrix& b, double size) {
  if (GapBetween(a, b).IsVisible(size)) return true;
  const KFbxVector4 scaleA = a.GetS(), scaleB = b.GetS();
  for (size_t i = 0; i < 3; ++i) {
    const double larger = std::max(std::abs(scaleA[i]), std::abs(scaleB[i]));
    if (std::abs(scaleA[i] - scaleB[i]) > kSmallShare * larger) return true;
  }
  return false;
}

const KFbxXMatrix* BoundMatrix(const scene::KFbxNode& node, const SkeletonState& skeleton) {
  const scene::KFbxPose* pose = skeleton.bindPose;
  if (pose && pose->Find(&node) < 0) {
    const auto found = skeleton.firstPoseOf.find(&node);
    pose = found == skeleton.firstPoseOf.end() ? nullptr : found->second;
  }
  return pose ? &pose->GetMatrix(pose->Find(&node)) : nullptr;
}

KFbxXMatrix StoredPlace(const BoneNode& bone, const SkeletonState& skeleton) {
  const KFbxXMatrix boneSpace(bone.boneSpaceTranslation, bone.boneSpaceRotationEuler, {1, 1, 1});
  return skeleton.actorTurn.Inverse() * boneSpace.Inverse();
}

std::string ShortNumber(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.4g", value == 0.0 ? 0.0 : value);
  return text;
}

}  // namespace ts3d
