// SPDX-License-Identifier: MIT
#include "scene/gltf/rest_pose.h"

#include <algorithm>
#include <cmath>

namespace scene::gltf {
namespace {

KFbxVector4 AxisOf(const KFbxXMatrix& m, size_t axis) {
  return {m.At(4 * axis), m.At(4 * axis + 1), m.At(4 * axis + 2)};
}

double Largest(const KFbxVector4& v) { return std::max({std::abs(v[0]), std::abs(v[1]), std::abs(v[2])}); }

/// @param cosine    of the angle up to which axes are alike
/// @param distance  up to which places are
bool AreAlike(const KFbxXMatrix& a, const KFbxXMatrix& b, double cosine, double distance) {
  constexpr double kScale = 0.01;
  for (size_t axis = 0; axis < 3; ++axis) {
    const KFbxVector4 ofA = AxisOf(a, axis), ofB = AxisOf(b, axis);
    const double lengthA = ofA.Length(), lengthB = ofB.Length();
    const bool hasSize = std::abs(lengthA - lengthB) <= kScale * lengthB;
    if (!hasSize || !(ofA.DotProduct(ofB) >= cosine * lengthA * lengthB)) return false;
  }
  return (a.GetT() - b.GetT()).Length() <= distance;
}

}  // namespace

RestPose::RestPose(const Document& document, std::span<const uint32_t> order, const KFbxXMatrix& world)
    : places_(document.nodes.size(), world), unit_(AxisOf(world, 0).Length()) {
  for (const uint32_t index : order) {
    const Node& node = document.nodes[index];
    places_[index] = (node.parent == kNone ? world : places_[node.parent]) * node.local;
  }
}

bool RestPose::IsBindPose(std::span<const uint32_t> joints, const std::vector<bool>& isBone,
                          std::span<const KFbxXMatrix> inverseBind, size_t reference) const {
  // About half a degree, and what is seen of a whole character.
  constexpr double kCosine = 0.99996, kPart = 1e-3, kRounding = 1e-6;
  const KFbxXMatrix place = Of(joints[reference]) * inverseBind[reference];
  const double extent = ExtentOf(joints);
  for (size_t i = 0; i < joints.size(); ++i) {
    // Matrices without an inverse are left for joints that hold nothing.
    if (i == reference || !isBone[joints[i]] || inverseBind[i].Determinant() == 0.0) continue;
    const KFbxXMatrix& rest = Of(joints[i]);
    const double distance = kPart * extent + kRounding * (Largest(rest.GetT()) + unit_);
    if (!AreAlike(place * inverseBind[i].Inverse(), rest, kCosine, distance)) return false;
  }
  return true;
}

bool RestPose::IsNear(std::span<const uint32_t> joints, const KFbxXMatrix& a, const KFbxXMatrix& b) const {
  return AreAlike(a, b, 0.5, ExtentOf(joints));
}

double RestPose::ExtentOf(std::span<const uint32_t> joints) const {
  double extent = 0.0;
  for (const uint32_t joint : joints)
    extent = std::max(extent, Largest(Of(joint).GetT() - Of(joints[0]).GetT()));
  return extent;
}

}  // namespace scene::gltf
