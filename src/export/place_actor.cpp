// SPDX-License-Identifier: MIT
#include "export/place_actor.h"

#include <cmath>
#include <cstddef>

#include "actor/rigid_transform.h"

namespace actor {
namespace {

Double3 Turned(const Placement& placement, const Vector3& v) {
  Double3 turned{};
  for (size_t i = 0; i < 3; ++i) {
    for (size_t j = 0; j < 3; ++j) turned[i] += placement.axes[i][j] * static_cast<double>(v[j]);
  }
  return turned;
}

Vector3 ToFloats(const Double3& v, double scale) {
  return {static_cast<float>(v[0] * scale), static_cast<float>(v[1] * scale),
          static_cast<float>(v[2] * scale)};
}

/// The turn as a quaternion. Whichever component is largest is taken from the diagonal: its root is exact.
std::array<double, 4> QuaternionOf(const Placement& placement) {
  const auto& m = placement.axes;
  const double trace = m[0][0] + m[1][1] + m[2][2];
  std::array<double, 4> q{};
  if (trace > 0.0) {
    q[3] = std::sqrt(1.0 + trace) / 2.0;
    for (size_t i = 0; i < 3; ++i)
      q[i] = (m[(i + 2) % 3][(i + 1) % 3] - m[(i + 1) % 3][(i + 2) % 3]) / (4.0 * q[3]);
    return q;
  }
  size_t i = m[1][1] > m[0][0] ? 1 : 0;
  if (m[2][2] > m[i][i]) i = 2;
  const size_t j = (i + 1) % 3, k = (i + 2) % 3;
  q[i] = std::sqrt(1.0 + m[i][i] - m[j][j] - m[k][k]) / 2.0;
  q[j] = (m[i][j] + m[j][i]) / (4.0 * q[i]);
  q[k] = (m[i][k] + m[k][i]) / (4.0 * q[i]);
  q[3] = (m[k][j] - m[j][k]) / (4.0 * q[i]);
  return q;
}

/// As files have them: with w negated.
void Store(const RigidTransform& transform, Quaternion& rotation, Vector3& translation) {
  for (size_t i = 0; i < 4; ++i)
    rotation[i] = static_cast<float>(i == 3 ? -transform.rotation[i] : transform.rotation[i]);
  translation = ToFloats(transform.translation, 1.0);
}

void PlaceBone(const RigidTransform& turn, double scale, Bone& bone) {
  RigidTransform bind = turn * BindTransform(bone), local = LocalTransform(bone);
  if (bone.parent < 0) local = turn * local;
  for (RigidTransform* transform : {&bind, &local}) {
    for (double& length : transform->translation) length *= scale;
  }
  Store(bind.Inverse(), bone.boneSpaceRotation, bone.boneSpaceTranslation);
  Store(local, bone.rotation, bone.translation);
}

}  // namespace

void PlaceActor(const Placement& placement, Actor& actor) {
  for (Mesh& mesh : actor.meshes) {
    for (Vertex& vertex : mesh.vertices) {
      vertex.position = ToFloats(Turned(placement, vertex.position), placement.scale);
      vertex.normal = ToFloats(Turned(placement, vertex.normal), 1.0);
    }
  }
  const RigidTransform turn{QuaternionOf(placement), {}};
  for (Bone& bone : actor.skeleton.bones) PlaceBone(turn, placement.scale, bone);
}

}  // namespace actor
