// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
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

  using Four = std::array<uint32_t, kSize>;
  struct Influences {
    Four joints{};
    Four weights{};  ///< the bits of numbers above 0, or 0

    bool operator==(const Influences&) const = default;
  };
  /// Calls `use` with the number among the four, the joint and the weight's bits of each influence on a vertex.
  /// What has no weight is none, as is what the file lacks.
  template <class Use>
  void ForEach(size_t vertex, const Use& use) const {
    if (vertex >= weights.size()) return;
    const Four words = weights.FirstWords(vertex);
    const Four numbers = vertex < joints.size() ? joints.FirstFour(vertex) : Four();
    for (size_t i = 0; i < kSize; ++i) {
      if (FloatElements::IsPositive(words[i])) use(i, numbers[i], words[i]);
    }
  }
  /// Does so for some vertices, from whose numbers `first` is taken; `use` gets the place in the list instead.
  template <class Use>
  void ForEachOf(std::span<const uint32_t> vertices, uint32_t first, const Use& use) const {
    const size_t count = std::min(weights.size(), joints.size());
    joints.UseFour([&](const auto& jointsAt) {
      for (size_t place = 0; place < vertices.size(); ++place) {
        const uint32_t vertex = vertices[place] - first;
        if (vertex >= count) {
          ForEach(vertex, [&](size_t, uint32_t joint, uint32_t weight) { use(place, joint, weight); });
          continue;
        }
        const Four numbers = jointsAt(vertex), words = weights.FirstWords(vertex);
        for (size_t i = 0; i < kSize; ++i) {
          if (FloatElements::IsPositive(words[i])) use(place, numbers[i], words[i]);
        }
      }
    });
  }
  Influences Of(size_t vertex) const {
    Influences all;
    ForEach(vertex, [&](size_t i, uint32_t joint, uint32_t weight) {
      all.joints[i] = joint;
      all.weights[i] = weight;
    });
    return all;
  }
};

/// The box around some points.
struct Bounds {
  static constexpr float kFar = std::numeric_limits<float>::infinity();

  FloatQuad low = {kFar, kFar, kFar, kFar}, high = {-kFar, -kFar, -kFar, -kFar};

  void Add(const FloatQuad& point) {
    low = point < low ? point : low;
    high = point > high ? point : high;
  }
};

/// Vertices that primitives share.
struct Vertices {
  uint32_t first = 0;       ///< number of the first among the vertices of all primitives of the mesh
  FloatElements positions;  ///< in the mesh's space
  Bounds bounds;            ///< of the positions
  FloatElements normals;    ///< none, or one for each position
  std::vector<InfluenceSet> influences;

  /// None of sets that they do not have.
  InfluenceSet::Influences InfluencesOf(size_t vertex, size_t set) const {
    return set < influences.size() ? influences[set].Of(vertex) : InfluenceSet::Influences();
  }
  uint64_t Memory() const;
};

/// From the lowest to the highest of some points, along Y.
struct HeightRange {
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();

  /// 0 without points, and where they are out of bounds.
  double Height() const { return std::isfinite(high - low) ? std::max(high - low, 0.0) : 0.0; }
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
  void SetBoundsOfLast(const Bounds& bounds) { vertices_.back().bounds = bounds; }
  uint32_t size() const { return static_cast<uint32_t>(points_.size()); }
  uint64_t Memory() const;
  /// Calls `use` with the vertices that have the point and its place among them.
  template <class Use>
  void UseVertex(uint32_t point, const Use& use) const {
    const auto isBefore = [](uint32_t vertex, const Vertices& list) { return vertex < list.first; };
    const auto next = std::upper_bound(vertices_.begin(), vertices_.end(), points_[point], isBefore);
    use(*(next - 1), points_[point] - (next - 1)->first);
  }
  /// Calls `use` with vertices, those of them that are points, counted from the first vertex of the mesh, and
  /// the number of the first of these points.
  template <class Use>
  void ForEachList(const Use& use) const {
    const std::span<const uint32_t> all = points_;
    size_t begin = 0;
    for (size_t i = 0; i < vertices_.size(); ++i) {
      const auto next = i + 1 == vertices_.size()
                            ? all.end()
                            : std::lower_bound(all.begin(), all.end(), vertices_[i + 1].first);
      const auto end = static_cast<size_t>(next - all.begin());
      use(vertices_[i], all.subspan(begin, end - begin), static_cast<uint32_t>(begin));
      begin = end;
    }
  }
  /// x, y, z of each point, taken by `place` to where they belong and rounded to single precision.
  FbxArray<double> Placed(const KFbxXMatrix& place) const;
  /// Adds all vertices, where `place` takes them, to `range`.
  void AddHeights(const KFbxXMatrix& place, HeightRange& range) const;
  void DropNormals();

 private:
  std::vector<Vertices> vertices_;
  std::vector<uint32_t> points_;  ///< first vertex of each
};

}  // namespace scene::gltf
