// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace base {

/// A point or direction, in double precision so that no stored float can overflow on the way.
using Vector = std::array<double, 3>;

inline Vector ToVector(const std::array<float, 3>& v) { return {v[0], v[1], v[2]}; }
inline Vector Minus(const Vector& a, const Vector& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
inline double Dot(const Vector& a, const Vector& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
inline double Length(const Vector& a) { return std::sqrt(Dot(a, a)); }
inline double Distance(const Vector& a, const Vector& b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}
inline Vector Cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// The box around points; empty (low above high) at first. What is no number does not count.
struct Box {
  static constexpr double kFar = std::numeric_limits<double>::infinity();

  Vector low{kFar, kFar, kFar}, high{-kFar, -kFar, -kFar};

  void Add(const Vector& point) {
    for (size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], point[axis]);
      high[axis] = std::max(high[axis], point[axis]);
    }
  }
  bool IsEmpty() const { return low[0] > high[0]; }
  Vector Centre() const {
    return {0.5 * (low[0] + high[0]), 0.5 * (low[1] + high[1]), 0.5 * (low[2] + high[2])};
  }
  Vector Extent() const { return Minus(high, low); }
  /// Its length; 0 when empty.
  double Diagonal() const { return IsEmpty() ? 0.0 : Distance(low, high); }
  /// The length of its longest side; 0 when empty.
  double LargestSide() const {
    const Vector sides = Extent();
    return IsEmpty() ? 0.0 : *std::max_element(sides.begin(), sides.end());
  }
};

}  // namespace base
