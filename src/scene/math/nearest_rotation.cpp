// SPDX-License-Identifier: MIT
#include "scene/math/nearest_rotation.h"

#include <algorithm>
#include <cmath>

namespace scene {
namespace {

/// Cosine of the angle between two axes up to which it is a right one: what files hold was computed and rounded in
/// single precision, often more than once.
constexpr double kRightAngle = 1e-5;
constexpr double kPrecise = 1e-15;
/// Each step halves a scale that is far from 1, and squares what is missing of one that is near.
constexpr int kMostSteps = 100;

bool IsSheared(const KFbxXMatrix& m) {
  const KFbxVector4 axis[3] = {
      {m.At(0), m.At(1), m.At(2)}, {m.At(4), m.At(5), m.At(6)}, {m.At(8), m.At(9), m.At(10)}};
  for (size_t i = 0; i < 3; ++i) {
    const KFbxVector4 &a = axis[i], &b = axis[(i + 1) % 3];
    if (std::abs(a.DotProduct(b)) > kRightAngle * a.Length() * b.Length()) return true;
  }
  return false;
}

}  // namespace

KFbxXMatrix NearestRotationIfSheared(const KFbxXMatrix& m) {
  KFbxXMatrix rotation = m.Linear();
  const double determinant = m.Determinant();
  if (determinant == 0.0 || !std::isfinite(1.0 / determinant) || !IsSheared(m)) return rotation;
  // The mean of a matrix and its transposed inverse has the same rotation and scales nearer to 1.
  for (int step = 0; step < kMostSteps; ++step) {
    const KFbxXMatrix inverse = rotation.Inverse();
    double most = 0.0;
    for (size_t row = 0; row < 3; ++row) {
      for (size_t axis = 0; axis < 3; ++axis) {
        double& entry = rotation.At(4 * axis + row);
        const double mean = 0.5 * (entry + inverse.At(4 * row + axis));
        most = std::max(most, std::abs(mean - entry));
        entry = mean;
      }
    }
    if (!(most > kPrecise)) break;
  }
  return rotation;
}

}  // namespace scene
