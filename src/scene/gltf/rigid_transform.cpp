// SPDX-License-Identifier: MIT
#include "scene/gltf/rigid_transform.h"

#include <cmath>

#include "scene/math/nearest_rotation.h"

namespace scene::gltf {

bool IsInvertible(const KFbxXMatrix& m) {
  const double determinant = m.Determinant();
  return determinant != 0.0 && std::isfinite(determinant) && std::isfinite(1.0 / determinant);
}

KFbxXMatrix WithoutScale(const KFbxXMatrix& m) {
  // As bones of FBX files lose theirs with --rigid-bones.
  if (IsInvertible(m)) return {m.GetT(), NearestRotationIfSheared(m).GetR(), {1, 1, 1}};
  KFbxVector4 x{m.At(0), m.At(1), m.At(2)}, y{m.At(4), m.At(5), m.At(6)};
  const auto normalize = [](KFbxVector4& v, const KFbxVector4& otherwise) {
    const double length = v.Length();
    v = length > 0 && std::isfinite(length) ? v * (1.0 / length) : otherwise;
  };
  normalize(x, {1, 0, 0});
  y = y - x * x.DotProduct(y);
  // Any direction beside x where y has none of its own.
  normalize(y, std::abs(x[1]) < 0.5 ? KFbxVector4(0, 1, 0) : KFbxVector4(0, 0, 1));
  y = y - x * x.DotProduct(y);
  normalize(y, {0, 1, 0});
  const KFbxVector4 z = x.CrossProduct(y);
  KFbxXMatrix rigid;
  for (size_t row = 0; row < 3; ++row) {
    rigid.At(row) = x[row];
    rigid.At(4 + row) = y[row];
    rigid.At(8 + row) = z[row];
  }
  rigid.SetT(m.GetT());
  return rigid;
}

}  // namespace scene::gltf
