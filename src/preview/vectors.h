// SPDX-License-Identifier: MIT
#pragma once

#include "base/vectors.h"

/// Pictures and pages of an actor, drawn without any graphics hardware.
namespace preview {

using base::Cross;
using base::Dot;
using base::Length;
using base::ToVector;
using base::Vector;

inline Vector operator+(const Vector& a, const Vector& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }
inline Vector operator-(const Vector& a, const Vector& b) { return base::Minus(a, b); }
inline Vector operator*(const Vector& a, double s) { return {a[0] * s, a[1] * s, a[2] * s}; }

/// `a` with length 1; `fallback` when it has no direction.
inline Vector Unit(const Vector& a, const Vector& fallback) {
  const double length = Length(a);
  return length > 1e-12 ? a * (1.0 / length) : fallback;
}

}  // namespace preview
