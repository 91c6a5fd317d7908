// SPDX-License-Identifier: MIT
#include "prove/runtime_pose.h"

#include <cmath>
#include <limits>

namespace prove {
namespace {

/// A turn as files keep it has its scalar part negated.
Turn Usual(const actor::Quaternion& stored) {
  return {stored[0], stored[1], stored[2], -static_cast<double>(stored[3])};
}

template <typename Real>
struct RuntimeTransform {
  Real turn[4];
  Real at[3];

  RuntimeTransform(const Turn& t, const Point& p)
      : turn{static_cast<Real>(t[0]), static_cast<Real>(t[1]), static_cast<Real>(t[2]),
             static_cast<Real>(t[3])},
        at{static_cast<Real>(p[0]), static_cast<Real>(p[1]), static_cast<Real>(p[2])} {}

  BoneMatrix<Real> Matrix() const {
    const Real x = turn[0], y = turn[1], z = turn[2], w = turn[3];
    return {{{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w), at[0]},
             {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w), at[1]},
             {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y), at[2]}}};
  }

  /// This after `inner`.
  RuntimeTransform After(const RuntimeTransform& inner) const {
    RuntimeTransform out = inner;
    const Real *a = turn, *b = inner.turn;
    out.turn[0] = a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1];
    out.turn[1] = a[3] * b[1] - a[0] * b[2] + a[1] * b[3] + a[2] * b[0];
    out.turn[2] = a[3] * b[2] + a[0] * b[1] - a[1] * b[0] + a[2] * b[3];
    out.turn[3] = a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2];
    const BoneMatrix<Real> m = Matrix();
    for (size_t r = 0; r < 3; ++r) {
      out.at[r] =
          m.rows[r][0] * inner.at[0] + m.rows[r][1] * inner.at[1] + m.rows[r][2] * inner.at[2] + at[r];
    }
    return out;
  }
};

Point ToPoint(const actor::Vector3& v) { return {v[0], v[1], v[2]}; }

}  // namespace

std::vector<BonePlace> SkeletonPlaces(const actor::Skeleton& skeleton, const ModelRig& rig,
                                      const std::vector<Turn>& turns) {
  std::vector<BonePlace> places;
  for (const actor::Bone& bone : skeleton.bones) {
    const Turn rest = Usual(bone.rotation);
    places.push_back({turns.empty() ? rest : rest * turns[places.size()], ToPoint(bone.translation)});
  }
  if (rig.rootPlace) places.front().at = *rig.rootPlace;
  return places;
}

std::vector<BonePlace> PlacesOf(const actor::Skeleton& skeleton, const ModelRig& rig,
                                const std::vector<Affine>& worlds) {
  std::vector<BonePlace> places = SkeletonPlaces(skeleton, rig, {});
  std::vector<Affine> frames;
  for (size_t i = 0; i < skeleton.bones.size(); ++i) {
    const int32_t parent = skeleton.bones[i].parent;
    const Affine above = parent < 0 ? Affine() : frames[static_cast<size_t>(parent)];
    if (rig.nodeOf[i] < 0) {
      frames.push_back(above * Affine::Shift(places[i].at) * Affine::Of(places[i].turn));
      continue;
    }
    frames.push_back((rig.actorTurn * worlds[static_cast<size_t>(rig.nodeOf[i])]).Frame());
    const Affine local = above.Inverse() * frames.back();
    places[i] = {local.FrameTurn(), local.Origin()};
  }
  return places;
}

template <typename Real>
std::vector<BoneMatrix<Real>> PoseBones(const actor::Skeleton& skeleton,
                                        const std::vector<BonePlace>& places) {
  std::vector<RuntimeTransform<Real>> absolutes;
  std::vector<BoneMatrix<Real>> bones;
  for (size_t i = 0; i < skeleton.bones.size(); ++i) {
    const actor::Bone& bone = skeleton.bones[i];
    const RuntimeTransform<Real> local(places[i].turn, places[i].at);
    absolutes.push_back(bone.parent < 0 ? local : absolutes[static_cast<size_t>(bone.parent)].After(local));
    const RuntimeTransform<Real> space(Usual(bone.boneSpaceRotation), ToPoint(bone.boneSpaceTranslation));
    bones.push_back(absolutes.back().After(space).Matrix());
  }
  return bones;
}

template <typename Real>
Point DrawVertex(const actor::Mesh& mesh, const actor::Vertex& vertex,
                 const std::vector<BoneMatrix<Real>>& bones) {
  const auto x = static_cast<Real>(vertex.position[0]), y = static_cast<Real>(vertex.position[1]),
             z = static_cast<Real>(vertex.position[2]);
  // A vertex without influences stays where it is.
  if (vertex.influenceCount == 0) return {x, y, z};
  Real sum[3] = {0, 0, 0}, reach = 0;
  for (uint32_t i = 0; i < vertex.influenceCount; ++i) {
    const actor::Influence& influence = mesh.influences[vertex.firstInfluence + i];
    const auto& rows = bones[static_cast<size_t>(influence.bone)].rows;
    const auto weight = static_cast<Real>(influence.weight);
    reach += std::abs(weight);
    for (size_t r = 0; r < 3; ++r)
      sum[r] += weight * (rows[r][0] * x + rows[r][1] * y + rows[r][2] * z + rows[r][3]);
  }
  // Weights that are no numbers were read as 0.
  if (reach == 0) sum[0] = std::numeric_limits<Real>::quiet_NaN();
  return {sum[0], sum[1], sum[2]};
}

template std::vector<BoneMatrix<float>> PoseBones(const actor::Skeleton&, const std::vector<BonePlace>&);
template std::vector<BoneMatrix<double>> PoseBones(const actor::Skeleton&, const std::vector<BonePlace>&);
template Point DrawVertex(const actor::Mesh&, const actor::Vertex&, const std::vector<BoneMatrix<float>>&);
template Point DrawVertex(const actor::Mesh&, const actor::Vertex&, const std::vector<BoneMatrix<double>>&);

}  // namespace prove
