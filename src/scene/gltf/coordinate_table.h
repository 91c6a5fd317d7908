// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <map>
#include <tuple>
#include <vector>

#include "scene/gltf/accessors.h"
#include "scene/gltf/triangle_list.h"

namespace scene::gltf {

/// Pairs of texture coordinates, v upwards, taken from the file when they are needed.
class CoordinateList {
 public:
  /// @param first  number of the first pair among those of the mesh
  CoordinateList(uint32_t first, FloatElements elements, size_t count, const CoordinateTransform& transform)
      : first_(first), elements_(std::move(elements)), count_(count), transform_(transform) {}

  uint32_t First() const { return first_; }
  size_t size() const { return count_; }
  /// u and v of one of them; 0 for what is not finite.
  std::array<float, 2> At(size_t place) const;
  /// Bytes of the pairs, once they are made, and of what is kept until then.
  uint64_t Memory() const { return count_ * kPairMemory + elements_.Memory(); }
  /// Bytes of a pair and of its vertex's number.
  static constexpr uint64_t kPairMemory = 2 * sizeof(double) + sizeof(int32_t);

 private:
  uint32_t first_;
  FloatElements elements_;
  size_t count_;
  CoordinateTransform transform_;
};

/// Gives the texture coordinates of a mesh's vertices numbers, to equal ones at a control point the same.
class CoordinateTable {
 public:
  CoordinateTable(const AccessorReader& accessors, Budget& budget, size_t pointCount);

  /// The pair of each vertex.
  /// @param points  the control point of each, below the count
  /// @throws Fault
  VertexNumbers PairsOf(uint32_t accessor, const CoordinateTransform& transform, const VertexNumbers& points);
  /// All pairs. Some of them have no vertex.
  std::vector<CoordinateList> Take() { return std::move(lists_); }

 private:
  /// A pair at a control point that has several.
  struct Further {
    uint32_t pair, before;
  };

  FbxArray<int32_t> Number(uint32_t first, std::span<const int32_t> points);
  [[gnu::noinline]] uint32_t NumberBeside(uint32_t& last, uint32_t pair);
  std::array<float, 2> ValuesOf(uint32_t pair) const;

  const AccessorReader& accessors_;
  Budget& budget_;
  std::vector<CoordinateList> lists_;
  std::vector<uint32_t> last_;  ///< for each control point its pair, or kSeveral and a place among `further_`
  std::vector<Further> further_;  ///< `before` likewise
  std::map<std::tuple<uint32_t, CoordinateTransform, VertexNumbers>, VertexNumbers> known_;
};

}  // namespace scene::gltf
