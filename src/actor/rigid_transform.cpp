// SPDX-License-Identifier: MIT
#include "actor/rigid_transform.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace actor {
namespace {}  // namespace

Double3 RigidTransform::Apply(const Double3& v) const {
  const Double3 axis{rotation[0], rotation[1], rotation[2]};
  const Double3 first = base::Cross(axis, v), second = base::Cross(axis, first);
  Double3 result;
  for (size_t i = 0; i < 3; ++i) {
    result[i] = v[i] + 2.0 * (rotation[3] * first[i] + second[i]) + translation[i];
  }
  return result;
}

RigidTransform RigidTransform::Inverse() const {
  RigidTransform inverse{{-rotation[0], -rotation[1], -rotation[2], rotation[3]}, {}};
  const Double3 moved = inverse.Apply(translation);
  inverse.translation = {-moved[0], -moved[1], -moved[2]};
  return inverse;
}

std::array<double, 16> RigidTransform::Matrix() const {
  std::array<double, 16> matrix{};
  const RigidTransform turn{rotation, {}};
  for (size_t column = 0; column < 3; ++column) {
    Double3 unit{};
    unit[column] = 1.0;
    const Double3 turned = turn.Apply(unit);
    std::copy(turned.begin(), turned.end(), matrix.begin() + static_cast<std::ptrdiff_t>(4 * column));
  }
  std::copy(translation.begin(), translation.end(), matrix.begin() + 12);
  matrix[15] = 1.0;
  return matrix;
}

RigidTransform operator*(const RigidTransform& a, const RigidTransform& b) {
  const auto& [ax, ay, az, aw] = a.rotation;
  const auto& [bx, by, bz, bw] = b.rotation;
  return {{aw * bx + ax * bw + ay * bz - az * by, aw * by - ax * bz + ay * bw + az * bx,
           aw * bz + ax * by - ay * bx + az * bw, aw * bw - ax * bx - ay * by - az * bz},
          a.Apply(b.translation)};
}

double TurnBetween(const RigidTransform& a, const RigidTransform& b) {
  double same = 0.0, opposite = 0.0;
  for (size_t i = 0; i < 4; ++i) {
    same += std::pow(a.rotation[i] - b.rotation[i], 2);
    opposite += std::pow(a.rotation[i] + b.rotation[i], 2);
  }
  // A half turn puts quaternions a quarter of the sphere apart.
  return 4.0 * std::asin(std::min(std::sqrt(std::min(same, opposite)) / 2.0, 1.0)) / std::numbers::pi;
}

RigidTransform FromStored(const Quaternion& rotation, const Vector3& translation) {
  RigidTransform transform;
  std::copy(translation.begin(), translation.end(), transform.translation.begin());
  const std::array<double, 4> usual{rotation[0], rotation[1], rotation[2], -static_cast<double>(rotation[3])};
  const double length =
      std::sqrt(usual[0] * usual[0] + usual[1] * usual[1] + usual[2] * usual[2] + usual[3] * usual[3]);
  if (length < 1e-12) return transform;
  for (size_t i = 0; i < 4; ++i) transform.rotation[i] = usual[i] / length;
  return transform;
}

std::vector<RigidTransform> ComposeSkeleton(const Skeleton& skeleton) {
  std::vector<RigidTransform> places;
  places.reserve(skeleton.bones.size());
  for (const Bone& bone : skeleton.bones) {
    const RigidTransform local = LocalTransform(bone);
    places.push_back(bone.parent < 0 ? local : places[static_cast<size_t>(bone.parent)] * local);
  }
  return places;
}

}  // namespace actor
