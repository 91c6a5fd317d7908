// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "actor/actor.h"

/// Pictures and pages of an actor, drawn without any graphics hardware.
namespace preview {

/// A point or direction in double precision, so that no stored float can overflow on the way.
using Vector = std::array<double, 3>;

inline Vector ToVector(const actor::Vector3& v) { return {v[0], v[1], v[2]}; }
inline Vector operator+(const Vector& a, const Vector& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }
inline Vector operator-(const Vector& a, const Vector& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
inline Vector operator*(const Vector& a, double s) { return {a[0] * s, a[1] * s, a[2] * s}; }
inline double Dot(const Vector& a, const Vector& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
inline double Length(const Vector& a) { return std::sqrt(Dot(a, a)); }

inline Vector Cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// `a` with length 1; `fallback` when it has no direction.
inline Vector Unit(const Vector& a, const Vector& fallback) {
  const double length = Length(a);
  return length > 1e-12 ? a * (1.0 / length) : fallback;
}

/// The box around points.
struct Bounds {
  Vector low{}, high{};
  bool empty = true;

  void Add(const Vector& point) {
    for (size_t i = 0; i < 3; ++i) {
      low[i] = empty ? point[i] : std::min(low[i], point[i]);
      high[i] = empty ? point[i] : std::max(high[i], point[i]);
    }
    empty = false;
  }
  Vector Centre() const { return (low + high) * 0.5; }
  Vector Extent() const { return high - low; }
};

}  // namespace preview
