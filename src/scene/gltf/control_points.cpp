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
  ForEachList([matrix = place, &to](const Vertices& list, std::span<const uint32_t> vertices, uint32_t) {
    for (const uint32_t vertex : vertices) {
      const Quad words = list.positions.Words(vertex - list.first);
      const auto at = [&](size_t axis) {
        return static_cast<double>(std::bit_cast<float>(uint32_t{words[axis]}));
      };
      const KFbxVector4 placed = matrix.MultT({at(0), at(1), at(2)});
      const auto x = static_cast<float>(placed[0]), y = static_cast<float>(placed[1]),
                 z = static_cast<float>(placed[2]);
      for (const float number : {x, y, z}) *to++ = static_cast<double>(number);
      if (std::isfinite(x + y + z)) continue;
      for (double* number = to - 3; number < to; ++number) *number = std::isfinite(*number) ? *number : 0.0;
    }
  });
  return xyz;
}

void ControlPoints::AddHeights(const KFbxXMatrix& place, HeightRange& range) const {
  const auto factor = [&](size_t axis) { return static_cast<float>(place.At(4 * axis + 1)); };
  const FloatQuad factors = {factor(0), factor(1), factor(2), 0};
  const float most = std::max({std::abs(factors[0]), std::abs(factors[1]), std::abs(factors[2])});
  // Whether the box tells it, but for what nobody sees.
  constexpr float kNothing = 1e-6f;
  const auto counts = [&](size_t axis) { return std::abs(factors[axis]) > kNothing * most ? 1 : 0; };
  const bool isAlongOneAxis = counts(0) + counts(1) + counts(2) <= 1;
  Bounds heights;
  const auto add = [&](const FloatQuad& point) {
    const FloatQuad products = factors * point;
    heights.Add(FloatQuad{} + (products[0] + products[1] + products[2]));
  };
  for (const Vertices& list : vertices_) {
    if (list.positions.size() == 0) continue;
    if (isAlongOneAxis) {
      add(list.bounds.low);
      add(list.bounds.high);
      continue;
    }
    for (size_t vertex = 0; vertex < list.positions.size(); ++vertex)
      add(reinterpret_cast<FloatQuad>(list.positions.Words(vertex)));
  }
  range.low = std::min(range.low, static_cast<double>(heights.low[0]) + place.At(13));
  range.high = std::max(range.high, static_cast<double>(heights.high[0]) + place.At(13));
}

void ControlPoints::DropNormals() {
  for (Vertices& list : vertices_) list.normals = {};
}

}  // namespace scene::gltf
