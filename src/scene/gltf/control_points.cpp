// SPDX-License-Identifier: MIT
#include "scene/gltf/control_points.h"

#include <bit>
#include <cmath>

namespace scene::gltf {
uint64_t Vertices::Memory() const {
  uint64_t bytes = positions.Memory() + normals.Memory();
  for (const InfluenceSet& set : influences) bytes += set.joints.Memory() + set.weights.Memory();
  return bytes;
}

void ControlPoints::Expect(size_t points) {
  // Grows by parts of its size, however many lists of vertices there are.
  const size_t needed = points_.size() + points;
  if (points_.capacity() < needed) points_.reserve(std::max(needed, 2 * points_.size()));
}

uint64_t ControlPoints::Memory() const {
  uint64_t bytes = points_.size() * sizeof(uint32_t);
  for (const Vertices& list : vertices_) bytes += list.Memory();
  return bytes;
}

FbxArray<double> ControlPoints::Placed(const KFbxXMatrix& place) const {
  FbxArray<double> xyz;
  double* to = xyz.Allocate(3 * points_.size());
  ForEach([matrix = place, &to](uint32_t, const Vertices& list, size_t vertex) {
    const Quad words = list.positions.Words(vertex);
    const auto at = [&](size_t axis) {
      return static_cast<double>(std::bit_cast<float>(uint32_t{words[axis]}));
    };
    const KFbxVector4 placed = matrix.MultT({at(0), at(1), at(2)});
    const auto x = static_cast<float>(placed[0]), y = static_cast<float>(placed[1]),
               z = static_cast<float>(placed[2]);
    for (const float number : {x, y, z}) *to++ = static_cast<double>(number);
    if (std::isfinite(x + y + z)) return;
    for (double* number = to - 3; number < to; ++number) *number = std::isfinite(*number) ? *number : 0.0;
  });
  return xyz;
}

void ControlPoints::AddHeights(const KFbxXMatrix& place, HeightRange& range) const {
  using Floats = float __attribute__((vector_size(16)));
  const auto factor = [&](size_t axis) { return static_cast<float>(place.At(4 * axis + 1)); };
  const Floats factors = {factor(0), factor(1), factor(2), 0};
  float low = std::numeric_limits<float>::infinity(), high = -low;
  for (const Vertices& list : vertices_) {
    for (size_t vertex = 0; vertex < list.positions.size(); ++vertex) {
      const Floats products = factors * reinterpret_cast<Floats>(list.positions.Words(vertex));
      const float y = products[0] + products[1] + products[2];
      low = std::min(low, y);
      high = std::max(high, y);
    }
  }
  range.low = std::min(range.low, static_cast<double>(low) + place.At(13));
  range.high = std::max(range.high, static_cast<double>(high) + place.At(13));
}

void ControlPoints::DropNormals() {
  for (Vertices& list : vertices_) list.normals = {};
}

}  // namespace scene::gltf
