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
  /// All pairs, v upwards: the bits of u above those of v.
  std::vector<uint64_t> Take() { return std::move(pairs_); }

 private:
  FbxArray<int32_t> Read(const FloatElements& elements, const CoordinateTransform& t);

  const AccessorReader& accessors_;
  Budget& budget_;
  NumberTable table_;
  std::vector<uint64_t> pairs_;
  std::map<std::pair<uint32_t, CoordinateTransform>, VertexNumbers> known_;
};

}  // namespace scene::gltf
