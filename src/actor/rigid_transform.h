// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "actor/actor.h"
#include "base/vectors.h"

namespace actor {

using Double3 = base::Vector;

/// A turn followed by a shift: v -> rotation * v + translation. The quaternion has the usual form, not that
/// of files, and length 1.
struct RigidTransform {
  std::array<double, 4> rotation{0.0, 0.0, 0.0, 1.0};  ///< x, y, z, w
  std::array<double, 3> translation{};

  std::array<double, 3> Apply(const std::array<double, 3>& v) const;
  RigidTransform Inverse() const;
  /// 16 numbers, column by column.
  std::array<double, 16> Matrix() const;
};

/// First `b`, then `a`.
RigidTransform operator*(const RigidTransform& a, const RigidTransform& b);

/// The largest difference of two turns as a part of a half turn: 0 for equal ones, 1 at most.
double TurnBetween(const RigidTransform& a, const RigidTransform& b);

/// A quaternion and translation of a file. A quaternion without length turns nothing.
RigidTransform FromStored(const Quaternion& rotation, const Vector3& translation);

/// The bone's place in its parent.
inline RigidTransform LocalTransform(const Bone& bone) { return FromStored(bone.rotation, bone.translation); }
/// The bone's place in model space, where meshes are: what its bone space undoes.
inline RigidTransform BindTransform(const Bone& bone) {
  return FromStored(bone.boneSpaceRotation, bone.boneSpaceTranslation).Inverse();
}

/// The bones' places as their parents and themselves give them, by bone number.
std::vector<RigidTransform> ComposeSkeleton(const Skeleton& skeleton);

}  // namespace actor
