// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <vector>

#include "scene/gltf/accessors.h"
#include "scene/gltf/number_table.h"
#include "scene/gltf/triangle_list.h"

namespace scene::gltf {

/// Texture coordinates of a mesh, each pair once.
class CoordinateTable {
 public:
  CoordinateTable(const AccessorReader& accessors, Budget& budget) : accessors_(accessors), budget_(budget) {}

  /// The pair of each vertex.
  /// @throws Fault
  VertexNumbers PairsOf(uint32_t accessor, const CoordinateTransform& transform);
  /// u and v of all pairs, v upwards.
  std::vector<float> Take() { return std::move(pairs_); }

 private:
  FbxArray<int32_t> Read(const FloatElements& elements, const CoordinateTransform& t);
  /// u and v of a pair in one number.
  uint64_t WordsOf(uint32_t pair) const;

  const AccessorReader& accessors_;
  Budget& budget_;
  NumberTable table_;
  std::vector<float> pairs_;
  std::map<std::pair<uint32_t, CoordinateTransform>, VertexNumbers> known_;
};

}  // namespace scene::gltf
