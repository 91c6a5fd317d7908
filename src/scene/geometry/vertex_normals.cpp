// SPDX-License-Identifier: MIT
#include "scene/geometry/vertex_normals.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "scene/math/vector.h"

namespace scene {
namespace {

KFbxVector4 PointAt(std::span<const double> points, int32_t i) {
  const double* p = &points[3 * static_cast<size_t>(i)];
  return {p[0], p[1], p[2]};
}

double AngleBetween(const KFbxVector4& a, const KFbxVector4& b, double lengths) {
  return std::acos(std::clamp(a.DotProduct(b) / lengths, -1.0, 1.0));
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
    const double lengthAb = ab.Length(), lengthAc = ac.Length(), lengthBc = bc.Length();
    if (!(area > 0.0) || !std::isfinite(area)) continue;
    const double angleA = AngleBetween(ab, ac, lengthAb * lengthAc);
    const double angleB = AngleBetween(-ab, bc, lengthAb * lengthBc);
    const double angles[3] = {angleA, angleB, std::numbers::pi - angleA - angleB};
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
