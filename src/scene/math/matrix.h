// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "scene/math/vector.h"

namespace scene {

/// An affine transform. Stored as in FBX files: sixteen numbers, 0-2 the image of the x axis, 4-6 of y, 8-10
/// of z, 12-14 the translation. Products are those of column vectors: (A * B) applies B first.
class KFbxXMatrix {
 public:
  /// The identity.
  constexpr KFbxXMatrix() = default;
  /// Translation * rotation * scaling; `eulerXyz` in degrees, x applied first.
  KFbxXMatrix(const KFbxVector4& translation, const KFbxVector4& eulerXyz, const KFbxVector4& scale);

  static KFbxXMatrix Translation(const KFbxVector4& t);
  static KFbxXMatrix Rotation(const KFbxVector4& eulerXyz) { return {{}, eulerXyz, {1, 1, 1}}; }
  static KFbxXMatrix Scaling(const KFbxVector4& s);

  double& At(size_t i) { return m_[i]; }
  double At(size_t i) const { return m_[i]; }

  KFbxVector4 GetT() const { return {m_[12], m_[13], m_[14]}; }
  /// Euler angles x y z in degrees of the matrix without its scale.
  KFbxVector4 GetR() const;
  /// Lengths of the axes' images; all three negative when the matrix mirrors, so that T, R and S rebuild it.
  KFbxVector4 GetS() const;
  void SetT(const KFbxVector4& t);

  KFbxXMatrix operator*(const KFbxXMatrix& o) const;
  /// The inverse; for a matrix without one (a scale of 0) the identity moved back by the translation.
  KFbxXMatrix Inverse() const;
  double Determinant() const;

  /// `p` as a point: the translation counts.
  KFbxVector4 MultT(const KFbxVector4& p) const {
    return {m_[0] * p[0] + m_[4] * p[1] + m_[8] * p[2] + m_[12],
            m_[1] * p[0] + m_[5] * p[1] + m_[9] * p[2] + m_[13],
            m_[2] * p[0] + m_[6] * p[1] + m_[10] * p[2] + m_[14], 1.0};
  }

  /// Without the translation.
  KFbxXMatrix Linear() const;

 private:
  std::array<double, 16> m_{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};

}  // namespace scene
