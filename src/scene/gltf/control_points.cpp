// SPDX-License-Identifier: MIT
#include "scene/gltf/control_points.h"

#include <cmath>

namespace scene::gltf {
namespace {

KFbxVector4 PlacedVertex(const Vertices& list, size_t vertex, const KFbxXMatrix& place) {
  const auto at = [&](size_t axis) { return static_cast<double>(list.positions.At(vertex, axis)); };
  return place.MultT({at(0), at(1), at(2)});
}

}  // namespace

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
  ForEach([&](uint32_t, const Vertices& list, size_t vertex) {
    const KFbxVector4 placed = PlacedVertex(list, vertex, place);
    for (size_t axis = 0; axis < 3; ++axis) {
      const auto number = static_cast<float>(placed[axis]);
      *to++ = std::isfinite(number) ? static_cast<double>(number) : 0.0;
    }
  });
  return xyz;
}

void ControlPoints::AddHeights(const KFbxXMatrix& place, HeightRange& range) const {
  ForEach([&](uint32_t, const Vertices& list, size_t vertex) {
    const double y = PlacedVertex(list, vertex, place)[1];
    if (!std::isfinite(y)) return;
    range.low = std::min(range.low, y);
    range.high = std::max(range.high, y);
  });
}

void ControlPoints::DropNormals() {
  for (Vertices& list : vertices_) list.normals = {};
}

}  // namespace scene::gltf
