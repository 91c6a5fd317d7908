// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <tuple>
#include <vector>

#include "scene/gltf/accessors.h"
#include "scene/gltf/triangle_list.h"

namespace scene::gltf {

/// Texture coordinates of a mesh, each pair once at every control point.
class CoordinateTable {
 public:
  CoordinateTable(const AccessorReader& accessors, Budget& budget, size_t pointCount);

  /// The pair of each vertex.
  /// @param points  the control point of each, below the count
  /// @throws Fault
  VertexNumbers PairsOf(uint32_t accessor, const CoordinateTransform& transform, const VertexNumbers& points);
  /// All pairs, v upwards: the bits of u above those of v.
  std::vector<uint64_t> Take() { return std::move(pairs_); }

 private:
  FbxArray<int32_t> Read(const FloatElements& elements, const CoordinateTransform& t,
                         std::span<const int32_t> points);
  uint32_t NumberOf(uint64_t pair, uint32_t& last);

  const AccessorReader& accessors_;
  Budget& budget_;
  std::vector<uint64_t> pairs_;
  std::vector<uint32_t> earlier_;  ///< for each pair the one before it at the same control point, or kNone
  std::vector<uint32_t> last_;     ///< for each control point
  std::map<std::tuple<uint32_t, CoordinateTransform, VertexNumbers>, VertexNumbers> known_;
};

}  // namespace scene::gltf
