// SPDX-License-Identifier: MIT
#include "scene/math/matrix.h"

#include <cmath>
#include <numbers>

#include "scene/math/angles.h"

namespace scene {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
/// Cosines of the angle about y: below the first nothing tells x from z, below the second little does.
constexpr double kPole = 1e-9, kNearPole = 0.1;

/// The angle about z of the rotation `q`, when `x` is the one about x. Near the poles of y the two cannot be
/// read independently: what rounding does to one, the other has to undo.
double AngleBeside(double x, const KFbxXMatrix& q) {
  const auto [sinX, cosX] = SinCos(x);
  return ArcTangent(sinX * q.At(8) - cosX * q.At(4), cosX * q.At(5) - sinX * q.At(9));
}

}  // namespace

KFbxXMatrix::KFbxXMatrix(const KFbxVector4& t, const KFbxVector4& r, const KFbxVector4& s) {
  const auto [sx, cx] = SinCos(r[0] * kDegree);
  const auto [sy, cy] = SinCos(r[1] * kDegree);
  const auto [sz, cz] = SinCos(r[2] * kDegree);
  m_ = {cy * cz * s[0],
        cy * sz * s[0],
        -sy * s[0],
        0,
        (sx * sy * cz - cx * sz) * s[1],
        (sx * sy * sz + cx * cz) * s[1],
        sx * cy * s[1],
        0,
        (cx * sy * cz + sx * sz) * s[2],
        (cx * sy * sz - sx * cz) * s[2],
        cx * cy * s[2],
        0,
        t[0],
        t[1],
        t[2],
        1};
}

KFbxXMatrix KFbxXMatrix::Translation(const KFbxVector4& t) {
  KFbxXMatrix result;
  result.SetT(t);
  return result;
}

KFbxXMatrix KFbxXMatrix::Scaling(const KFbxVector4& s) {
  KFbxXMatrix result;
  for (size_t i = 0; i < 3; ++i) result.m_[5 * i] = s[i];
  return result;
}

void KFbxXMatrix::SetT(const KFbxVector4& t) {
  for (size_t i = 0; i < 3; ++i) m_[12 + i] = t[i];
}

double KFbxXMatrix::Determinant() const {
  const KFbxVector4 x{m_[0], m_[1], m_[2]}, y{m_[4], m_[5], m_[6]}, z{m_[8], m_[9], m_[10]};
  return x.DotProduct(y.CrossProduct(z));
}

KFbxVector4 KFbxXMatrix::GetS() const {
  // Which axes a mirroring scale flips cannot be read from a
  // matrix; flipping all three keeps the rotation proper.
  const double sign = Determinant() < 0.0 ? -1.0 : 1.0;
  KFbxVector4 scale;
  for (size_t i = 0; i < 3; ++i) {
    scale[i] = sign * KFbxVector4(m_[4 * i], m_[4 * i + 1], m_[4 * i + 2]).Length();
  }
  return scale;
}

KFbxVector4 KFbxXMatrix::GetR() const {
  const KFbxVector4 scale = GetS();
  KFbxXMatrix q = Linear();
  for (size_t axis = 0; axis < 3; ++axis) {
    for (size_t row = 0; row < 3; ++row) {
      double& entry = q.m_[4 * axis + row];
      entry = scale[axis] != 0.0 ? entry / scale[axis] : (row == axis ? 1.0 : 0.0);
    }
  }
  const double cosY = std::sqrt(q.m_[0] * q.m_[0] + q.m_[1] * q.m_[1]);
  const double y = ArcTangent(-q.m_[2], cosY);
  // At the poles of y only the sum of x and z is known; all of it goes to x.
  if (cosY <= kPole) return {ArcTangent(-q.m_[9], q.m_[5]) / kDegree, y / kDegree, 0.0};
  const double x = ArcTangent(q.m_[6], q.m_[10]);
  const double z = cosY < kNearPole ? AngleBeside(x, q) : ArcTangent(q.m_[1], q.m_[0]);
  return {x / kDegree, y / kDegree, z / kDegree};
}

KFbxXMatrix KFbxXMatrix::operator*(const KFbxXMatrix& o) const {
  KFbxXMatrix result;
  for (size_t column = 0; column < 4; ++column) {
    for (size_t row = 0; row < 3; ++row) {
      double sum = column == 3 ? m_[12 + row] : 0.0;
      for (size_t k = 0; k < 3; ++k) sum += m_[4 * k + row] * o.m_[4 * column + k];
      result.m_[4 * column + row] = sum;
    }
  }
  return result;
}

KFbxXMatrix KFbxXMatrix::Linear() const {
  KFbxXMatrix linear = *this;
  linear.SetT({});
  return linear;
}

KFbxXMatrix KFbxXMatrix::Inverse() const {
  const double determinant = Determinant();
  if (determinant == 0.0 || !std::isfinite(1.0 / determinant)) return Translation(-GetT());
  const KFbxVector4 axis[3] = {{m_[0], m_[1], m_[2]}, {m_[4], m_[5], m_[6]}, {m_[8], m_[9], m_[10]}};
  KFbxXMatrix result;
  for (size_t row = 0; row < 3; ++row) {
    const KFbxVector4 cofactor = axis[(row + 1) % 3].CrossProduct(axis[(row + 2) % 3]) * (1.0 / determinant);
    for (size_t column = 0; column < 3; ++column) result.m_[4 * column + row] = cofactor[column];
  }
  result.SetT(-result.MultT(GetT()));
  return result;
}

}  // namespace scene
