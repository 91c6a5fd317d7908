// SPDX-License-Identifier: MIT
#include "scene/gltf/read_node_transform.h"

#include <cmath>

#include "scene/gltf/json_value.h"

namespace scene::gltf {
namespace {

/// No rotation for what is none.
KFbxXMatrix RotationOf(const std::vector<double>& q) {
  const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
  KFbxXMatrix matrix;
  if (!(length > 0) || !std::isfinite(length)) return matrix;
  const double x = q[0] / length, y = q[1] / length, z = q[2] / length, w = q[3] / length;
  const double rows[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
                             {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
                             {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}};
  for (size_t i = 0; i < 9; ++i) matrix.At(4 * (i / 3) + i % 3) = rows[i % 3][i / 3];
  return matrix;
}

}  // namespace

KFbxXMatrix ReadNodeTransform(JsonValue node) {
  if (const std::vector<double> numbers = node["matrix"].Numbers(); numbers.size() == 16) {
    KFbxXMatrix matrix;
    for (size_t i = 0; i < 16; ++i) {
      if (i % 4 != 3) matrix.At(i) = numbers[i];
    }
    return matrix;
  }
  std::vector<double> t = node["translation"].Numbers(), r = node["rotation"].Numbers(),
                      s = node["scale"].Numbers();
  t.resize(3, 0);
  s.resize(3, 1);
  if (r.size() != 4) r = {0, 0, 0, 1};
  return KFbxXMatrix::Translation({t[0], t[1], t[2]}) * RotationOf(r) *
         KFbxXMatrix::Scaling({s[0], s[1], s[2]});
}

}  // namespace scene::gltf
