// SPDX-License-Identifier: MIT
#include "prove/affine.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace prove {
namespace {

using base::Cross;
using base::Dot;

/// Makes `v` as long as 1; `otherwise` when it has no length.
Point Unit(const Point& v, const Point& otherwise) {
  const double length = std::sqrt(Dot(v, v));
  return length > 0.0 ? Point{v[0] / length, v[1] / length, v[2] / length} : otherwise;
}

}  // namespace

Turn TurnAbout(const Point& axis, double degrees) {
  const double half = degrees * std::numbers::pi / 360.0, s = std::sin(half);
  return {axis[0] * s, axis[1] * s, axis[2] * s, std::cos(half)};
}

Turn operator*(const Turn& a, const Turn& b) {
  return {a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
          a[3] * b[1] - a[0] * b[2] + a[1] * b[3] + a[2] * b[0],
          a[3] * b[2] + a[0] * b[1] - a[1] * b[0] + a[2] * b[3],
          a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]};
}

Affine Affine::From(const scene::KFbxXMatrix& matrix) {
  Affine out;
  for (size_t r = 0; r < 3; ++r) {
    for (size_t c = 0; c < 4; ++c) out.rows[r][c] = matrix.At(4 * c + r);
  }
  return out;
}

Affine Affine::Shift(const Point& by) {
  Affine out;
  for (size_t r = 0; r < 3; ++r) out.rows[r][3] = by[r];
  return out;
}

Affine Affine::Of(const Turn& turn) {
  const auto [x, y, z, w] = turn;
  return {{{{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w), 0},
            {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w), 0},
            {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y), 0}}}};
}

Affine operator*(const Affine& a, const Affine& b) {
  Affine out;
  for (size_t r = 0; r < 3; ++r) {
    for (size_t c = 0; c < 4; ++c) {
      out.rows[r][c] = a.rows[r][0] * b.rows[0][c] + a.rows[r][1] * b.rows[1][c] +
                       a.rows[r][2] * b.rows[2][c] + (c == 3 ? a.rows[r][3] : 0.0);
    }
  }
  return out;
}

double Affine::Determinant() const {
  const Point x{rows[0][0], rows[1][0], rows[2][0]}, y{rows[0][1], rows[1][1], rows[2][1]};
  return Dot(Cross(x, y), {rows[0][2], rows[1][2], rows[2][2]});
}

Affine Affine::Inverse() const {
  const double determinant = Determinant();
  if (determinant == 0.0 || !std::isfinite(determinant)) return {};
  Affine out;
  for (size_t r = 0; r < 3; ++r) {
    for (size_t c = 0; c < 3; ++c) {
      const size_t r1 = (c + 1) % 3, r2 = (c + 2) % 3, c1 = (r + 1) % 3, c2 = (r + 2) % 3;
      out.rows[r][c] = (rows[r1][c1] * rows[r2][c2] - rows[r1][c2] * rows[r2][c1]) / determinant;
    }
  }
  const Point back = out.Apply(Origin());
  for (size_t r = 0; r < 3; ++r) out.rows[r][3] = -back[r];
  return out;
}

Affine Affine::Frame() const {
  const double sign = Determinant() < 0.0 ? -1.0 : 1.0;
  const auto column = [&](size_t c) {
    return Point{sign * rows[0][c], sign * rows[1][c], sign * rows[2][c]};
  };
  const Point x = Unit(column(0), {1, 0, 0});
  Point y = column(1);
  const double along = Dot(x, y);
  for (size_t k = 0; k < 3; ++k) y[k] -= along * x[k];
  y = Unit(y, std::abs(x[1]) < 0.9 ? Unit({-x[0] * x[1], 1 - x[1] * x[1], -x[2] * x[1]}, {0, 1, 0})
                                   : Unit({-x[0] * x[2], -x[1] * x[2], 1 - x[2] * x[2]}, {0, 0, 1}));
  const Point z = Cross(x, y);
  Affine out;
  for (size_t r = 0; r < 3; ++r) out.rows[r] = {x[r], y[r], z[r], rows[r][3]};
  return out;
}

Affine Affine::NearestFrame() const {
  const double determinant = Determinant();
  if (determinant == 0.0 || !std::isfinite(1.0 / determinant)) return Frame();
  // Taking the mean with the transposed inverse again and again leaves the turn of the polar decomposition.
  Affine out = *this;
  double change = 1.0;
  for (int step = 0; step < 100 && change > 1e-15; ++step) {
    const Affine inverse = out.Inverse();
    change = 0.0;
    for (size_t r = 0; r < 3; ++r) {
      for (size_t c = 0; c < 3; ++c) {
        const double next = (out.rows[r][c] + inverse.rows[c][r]) / 2.0;
        change = std::max(change, std::abs(next - out.rows[r][c]));
        out.rows[r][c] = next;
      }
    }
  }
  for (size_t r = 0; r < 3; ++r) {
    for (size_t c = 0; c < 3 && determinant < 0.0; ++c) out.rows[r][c] = -out.rows[r][c];
    out.rows[r][3] = rows[r][3];
  }
  return out;
}

Turn Affine::FrameTurn() const {
  const auto& m = rows;
  // The largest of the four components is found first, so that nothing is divided by little.
  const double four[4] = {1 + m[0][0] - m[1][1] - m[2][2], 1 - m[0][0] + m[1][1] - m[2][2],
                          1 - m[0][0] - m[1][1] + m[2][2], 1 + m[0][0] + m[1][1] + m[2][2]};
  const auto most = static_cast<size_t>(std::max_element(four, four + 4) - four);
  const double f = 0.5 / std::sqrt(std::max(four[most], 1e-300));
  const double xy = m[0][1] + m[1][0], xz = m[0][2] + m[2][0], yz = m[1][2] + m[2][1];
  const double wx = m[2][1] - m[1][2], wy = m[0][2] - m[2][0], wz = m[1][0] - m[0][1];
  switch (most) {
    case 0:
      return {four[0] * f, xy * f, xz * f, wx * f};
    case 1:
      return {xy * f, four[1] * f, yz * f, wy * f};
    case 2:
      return {xz * f, yz * f, four[2] * f, wz * f};
    default:
      return {wx * f, wy * f, wz * f, four[3] * f};
  }
}

double Affine::Stretch(double scale) const {
  const Affine frame = Frame();
  const double sign = Determinant() < 0.0 ? -1.0 : 1.0;
  double most = 0.0;
  for (size_t r = 0; r < 3; ++r) {
    for (size_t c = 0; c < 3; ++c)
      most = std::max(most, std::abs(sign * rows[r][c] - scale * frame.rows[r][c]));
  }
  return most;
}

double Affine::TurnedFrom(const Affine& other) const {
  double most = 0.0;
  for (size_t r = 0; r < 3; ++r) {
    for (size_t c = 0; c < 3; ++c) most = std::max(most, std::abs(rows[r][c] - other.rows[r][c]));
  }
  return most;
}

}  // namespace prove
