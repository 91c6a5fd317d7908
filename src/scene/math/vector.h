// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>

namespace scene {

/// Four doubles. Points and directions use the first three; angles are in degrees, x y z.
class KFbxVector4 {
 public:
  constexpr KFbxVector4() = default;
  constexpr KFbxVector4(double x, double y, double z, double w = 0.0) : v_{x, y, z, w} {}

  constexpr double& operator[](size_t i) { return v_[i]; }
  constexpr double operator[](size_t i) const { return v_[i]; }

  constexpr KFbxVector4 operator+(const KFbxVector4& o) const {
    return {v_[0] + o[0], v_[1] + o[1], v_[2] + o[2], v_[3] + o[3]};
  }
  constexpr KFbxVector4 operator-(const KFbxVector4& o) const {
    return {v_[0] - o[0], v_[1] - o[1], v_[2] - o[2], v_[3] - o[3]};
  }
  constexpr KFbxVector4 operator-() const { return {-v_[0], -v_[1], -v_[2], -v_[3]}; }
  constexpr KFbxVector4 operator*(double f) const { return {v_[0] * f, v_[1] * f, v_[2] * f, v_[3] * f}; }
  /// Component by component.
  constexpr KFbxVector4 operator*(const KFbxVector4& o) const {
    return {v_[0] * o[0], v_[1] * o[1], v_[2] * o[2], v_[3] * o[3]};
  }

  /// Of the first three components.
  constexpr double DotProduct(const KFbxVector4& o) const {
    return v_[0] * o[0] + v_[1] * o[1] + v_[2] * o[2];
  }
  constexpr KFbxVector4 CrossProduct(const KFbxVector4& o) const {
    return {v_[1] * o[2] - v_[2] * o[1], v_[2] * o[0] - v_[0] * o[2], v_[0] * o[1] - v_[1] * o[0]};
  }
  double Length() const { return std::sqrt(DotProduct(*this)); }

 private:
  std::array<double, 4> v_{};
};

/// x, y, z and the scalar part last; the identity by default.
class KFbxQuaternion {
 public:
  constexpr KFbxQuaternion() = default;
  constexpr KFbxQuaternion(double x, double y, double z, double w) : v_{x, y, z, w} {}
  constexpr double& operator[](size_t i) { return v_[i]; }
  constexpr double operator[](size_t i) const { return v_[i]; }

 private:
  std::array<double, 4> v_{0.0, 0.0, 0.0, 1.0};
};

}  // namespace scene
