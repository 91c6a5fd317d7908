// SPDX-License-Identifier: MIT
#include "scene/gltf/triangle_list.h"

namespace scene::gltf {
namespace {

/// Calls `visit` with the three places in the list of indices of every triangle.
template <class Visit>
void ForEachPlaces(uint32_t mode, size_t indexCount, const Visit& visit) {
  if (mode == kTriangles) {
    for (size_t i = 0; i + 2 < indexCount; i += 3) visit(i, i + 1, i + 2);
  } else if (mode == kStrip) {
    for (size_t i = 0; i + 2 < indexCount; ++i) visit(i, i + 1 + i % 2, i + 2 - i % 2);
  } else if (mode == kFan) {
    for (size_t i = 1; i + 1 < indexCount; ++i) visit(0, i, i + 1);
  }
}

}  // namespace

TriangleList::TriangleList(uint32_t mode, std::optional<IntegerElements> indices, bool isMirrored,
                           VertexNumbers points, VertexNumbers coordinates, int32_t material)
    : mode_(mode),
      indices_(std::move(indices)),
      isMirrored_(isMirrored),
      points_(std::move(points)),
      coordinates_(std::move(coordinates)),
      material_(material) {
  ForEachTriangle([&](uint32_t, uint32_t, uint32_t) { ++count_; });
  isPlain_ = mode_ == kTriangles && !isMirrored_ && count_ == IndexCount() / 3;
}

template <class Use>
void TriangleList::ForEachTriangle(const Use& use) const {
  const auto visitAll = [&](const auto& vertexAt) {
    ForEachPlaces(mode_, IndexCount(), [&](size_t i, size_t j, size_t k) {
      const uint32_t a = vertexAt(i), b = vertexAt(j), c = vertexAt(k);
      if (a != b && b != c && a != c) isMirrored_ ? use(a, c, b) : use(a, b, c);
    });
  };
  if (indices_) return indices_->UseFirst(visitAll);
  visitAll([](size_t i) { return static_cast<uint32_t>(i); });
}

template <class NumberAt>
void TriangleList::WriteNumbers(std::span<int32_t> to, const NumberAt& numberAt) const {
  size_t next = 0;
  if (isPlain_ && indices_) {
    indices_->UseFirst([&](const auto& vertexAt) {
      for (; to.size() - next >= 3; next += 3) {
        for (size_t i = 0; i < 3; ++i) to[next + i] = numberAt(vertexAt(next + i), i);
      }
    });
    return;
  }
  ForEachTriangle([&](uint32_t a, uint32_t b, uint32_t c) {
    // The file may have been changed since the triangles were counted.
    if (to.size() - next < 3) return;
    size_t place = 0;
    for (const uint32_t vertex : {a, b, c}) to[next++] = numberAt(vertex, place++);
  });
  for (; next < to.size(); ++next) to[next] = numberAt(kNone, next % 3);
}

void TriangleList::WriteCorners(std::span<int32_t> to) const {
  const std::span<const int32_t> points = points_->View();
  // Also where nothing is: such triangles are dropped, and told, where damaged polygons are.
  constexpr int32_t kNowhere = 0x7ffffffe;
  WriteNumbers(to, [points](uint32_t vertex, size_t place) {
    const int32_t point = vertex < points.size() ? points[vertex] : kNowhere;
    return place == 2 ? ~point : point;
  });
}

void TriangleList::WriteCoordinates(std::span<int32_t> to) const {
  const std::span<const int32_t> pairs = coordinates_ ? coordinates_->View() : std::span<const int32_t>();
  WriteNumbers(to, [pairs](uint32_t vertex, size_t) { return vertex < pairs.size() ? pairs[vertex] : -1; });
}

}  // namespace scene::gltf
