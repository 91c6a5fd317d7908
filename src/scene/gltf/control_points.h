// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "scene/gltf/elements.h"
#include "scene/math/matrix.h"

namespace scene::gltf {

/// Four influences on each vertex.
struct InfluenceSet {
  static constexpr size_t kSize = 4;

  IntegerElements joints;
  FloatElements weights;

  /// Calls `use` with joint and weight of all influences on a vertex. What has no weight is of joint 0, as is
  /// what the file lacks.
  template <class Use>
  void ForEach(size_t vertex, const Use& use) const {
    const bool hasJoints = vertex < joints.size(), hasWeights = vertex < weights.size();
    joints.UseNumbers([&](const auto& jointAt) {
      for (size_t i = 0; i < kSize; ++i) {
        const float weight = hasWeights ? weights.At(vertex, i) : 0.0f;
        if (weight > 0.0f) {
          use(hasJoints ? jointAt(vertex, i) : 0, weight);
        } else {
          use(0, 0.0f);
        }
      }
    });
  }
};

/// Vertices that primitives share.
struct Vertices {
  uint32_t first = 0;       ///< number of the first among the vertices of all primitives of the mesh
  FloatElements positions;  ///< in the mesh's space
  FloatElements normals;    ///< none, or one for each position
  std::vector<InfluenceSet> influences;

  uint64_t Memory() const;
};

/// The control points of a mesh: of the vertices that are one point the first, where the file has it.
class ControlPoints {
 public:
  /// Adds vertices whose points will follow.
  void Add(Vertices vertices) { vertices_.push_back(std::move(vertices)); }
  /// @param vertex  among those that were added last, behind the one of the last point
  void AddPoint(size_t vertex) { points_.push_back(vertices_.back().first + static_cast<uint32_t>(vertex)); }
  void Expect(size_t points);

  const Vertices& Last() const { return vertices_.back(); }
  uint32_t size() const { return static_cast<uint32_t>(points_.size()); }
  uint64_t Memory() const;
  /// Calls `use` with the vertices that have the point and its place among them.
  template <class Use>
  void UseVertex(uint32_t point, const Use& use) const {
    const auto isBefore = [](uint32_t vertex, const Vertices& list) { return vertex < list.first; };
    const auto next = std::upper_bound(vertices_.begin(), vertices_.end(), points_[point], isBefore);
    use(*(next - 1), points_[point] - (next - 1)->first);
  }
  /// Calls `use` with the number of each point, the vertices that have it and its place among them.
  template <class Use>
  void ForEach(const Use& use) const {
    auto list = vertices_.begin();
    for (uint32_t point = 0; point < size(); ++point) {
      while (list + 1 != vertices_.end() && (list + 1)->first <= points_[point]) ++list;
      use(point, *list, points_[point] - list->first);
    }
  }
  /// Writes x, y, z of each point, taken by `place` to where they belong and rounded to single precision.
  void Place(const KFbxXMatrix& place, std::span<double> xyz) const;
  /// Gives up all but the positions.
  void KeepPositions();

 private:
  std::vector<Vertices> vertices_;
  std::vector<uint32_t> points_;  ///< first vertex of each
};

}  // namespace scene::gltf
