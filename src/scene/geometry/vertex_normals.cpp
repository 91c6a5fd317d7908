// SPDX-License-Identifier: MIT
#include "scene/geometry/vertex_normals.h"

#include <cmath>
#include <numbers>

#include "scene/math/vector.h"

namespace scene {
namespace {

KFbxVector4 PointAt(std::span<const double> points, int32_t i) {
  const double* p = &points[3 * static_cast<size_t>(i)];
  return {p[0], p[1], p[2]};
}

/// One number for each of two corners.
using Pair = double __attribute__((vector_size(16)));

/// Angles in 0..pi of the directions (along, across), for across > 0, to 1e-10. Unlike those of the mathematics
/// libraries they are the same on every system.
Pair AnglesOf(double across, const Pair& along) {
  constexpr double kTangentOfEighth = 0.41421356237309503, kPi = std::numbers::pi;
  constexpr int kTerms = 11;
  const Pair y = Pair{} + across, x = along < 0.0 ? -along : along;
  const Pair low = x < y ? x : y, high = x < y ? y : x;
  const auto isSteep = low > kTangentOfEighth * high;
  const Pair tangent = (isSteep ? low - high : low) / (isSteep ? low + high : high),
             square = tangent * tangent;
  Pair series{};
  for (int k = kTerms - 1; k >= 0; --k) series = 1.0 / (2 * k + 1) - square * series;
  const Pair flat = tangent * series + (isSteep ? Pair{} + kPi / 4 : Pair{});
  const Pair angle = x < y ? kPi / 2 - flat : flat;
  return along < 0.0 ? kPi - angle : angle;
}

}  // namespace

std::vector<float> ComputeVertexNormals(std::span<const double> points, std::span<const int32_t> triangles,
                                        bool clockwise) {
  std::vector<float> normals(points.size());
  for (size_t t = 0; t + 2 < triangles.size(); t += 3) {
    const KFbxVector4 a = PointAt(points, triangles[t]);
    const KFbxVector4 ab = PointAt(points, triangles[t + 1]) - a;
    const KFbxVector4 ac = PointAt(points, triangles[t + 2]) - a;
    const KFbxVector4 bc = ac - ab;
    const KFbxVector4 normal = ab.CrossProduct(ac);
    const double area = normal.Length();
    if (!(area > 0.0) || !std::isfinite(area)) continue;
    const Pair along = {ab.DotProduct(ac), -ab.DotProduct(bc)}, two = AnglesOf(area, along);
    const double angles[3] = {two[0], two[1], std::numbers::pi - two[0] - two[1]};
    for (size_t k = 0; k < 3; ++k) {
      float* sum = &normals[3 * static_cast<size_t>(triangles[t + k])];
      for (size_t axis = 0; axis < 3; ++axis)
        sum[axis] += static_cast<float>(normal[axis] / area * angles[k]);
    }
  }
  const double sign = clockwise ? -1.0 : 1.0;
  for (size_t i = 0; i + 2 < normals.size(); i += 3) {
    const KFbxVector4 sum{normals[i], normals[i + 1], normals[i + 2]};
    const double length = sum.Length();
    if (!(length > 0.0)) continue;
    for (size_t axis = 0; axis < 3; ++axis) {
      normals[i + axis] = static_cast<float>(sign * sum[axis] / length);
    }
  }
  return normals;
}

}  // namespace scene
