// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "base/vectors.h"
#include "scene/math/matrix.h"

/// Whether a package moves as its model does. Evaluates both by itself: nothing here is shared with the
/// folders that make packages, so that what is wrong there shows.
namespace prove {

using Point = base::Vector;
using base::Distance;

/// A turn: x, y, z and the scalar part, of length 1.
using Turn = std::array<double, 4>;

/// Turn by `degrees` about `axis`, which has length 1.
Turn TurnAbout(const Point& axis, double degrees);
/// First `b`, then `a`.
Turn operator*(const Turn& a, const Turn& b);

/// An affine transform of column vectors: three rows of four, the translation in the last column.
struct Affine {
  std::array<std::array<double, 4>, 3> rows{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}};

  static Affine From(const scene::KFbxXMatrix& matrix);
  static Affine Shift(const Point& by);
  static Affine Of(const Turn& turn);

  Point Apply(const Point& p) const {
    Point out;
    for (size_t r = 0; r < 3; ++r)
      out[r] = rows[r][0] * p[0] + rows[r][1] * p[1] + rows[r][2] * p[2] + rows[r][3];
    return out;
  }
  Point Origin() const { return {rows[0][3], rows[1][3], rows[2][3]}; }
  double Determinant() const;
  /// The identity when there is none.
  Affine Inverse() const;

  /// Place and turn without scale and shear: the x axis keeps its direction, y its plane. Mirrored axes are
  /// all flipped first.
  Affine Frame() const;
  /// The same with the turn that is nearest to the linear part; `Frame` where that has no inverse.
  Affine NearestFrame() const;
  /// The turn of a frame.
  Turn FrameTurn() const;
  /// Largest entry of what separates the linear part from a turn times `scale`.
  double Stretch(double scale = 1.0) const;
  /// Largest difference of the linear parts.
  double TurnedFrom(const Affine& other) const;
};

/// First `b`, then `a`.
Affine operator*(const Affine& a, const Affine& b);

}  // namespace prove
