// SPDX-License-Identifier: MIT
#pragma once

namespace scene {

struct SineAndCosine {
  double sine, cosine;
};

/// Sine and cosine of an angle, rounded from more than twice the precision of a double. The mathematics
/// libraries of different systems and processors disagree in the last bit, which the bytes of a skeleton show
/// wherever a rotation nearly cancels out. Beyond 1e8 radians only the remainder of a rounded turn counts.
SineAndCosine SinCos(double radians);

/// The angle of the direction (x, y), likewise the same on every system.
double ArcTangent(double y, double x);

}  // namespace scene
