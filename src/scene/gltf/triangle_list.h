// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <span>

#include "scene/gltf/document.h"
#include "scene/gltf/elements.h"

namespace scene::gltf {

/// A number for each vertex, which primitives that share the vertices have in common.
using VertexNumbers = std::shared_ptr<const FbxArray<int32_t>>;

/// The triangles of a primitive, but for those that have a vertex twice, as strips have them where they turn.
class TriangleList {
 public:
  /// @param indices      none: the vertices as they come
  /// @param coordinates  may be null
  TriangleList(uint32_t mode, std::optional<IntegerElements> indices, bool isMirrored, VertexNumbers points,
               VertexNumbers coordinates, int32_t material);

  /// The most triangles that `count` indices can make.
  static uint64_t MostTriangles(uint32_t mode, uint64_t count) {
    return mode == kTriangles ? count / 3 : count;
  }

  size_t Count() const { return count_; }
  int32_t Material() const { return material_; }
  /// Writes the control points of all corners, the last one of each triangle as ~index.
  void WriteCorners(std::span<int32_t> to) const;
  /// Writes the texture coordinates of all corners; -1 for none.
  void WriteCoordinates(std::span<int32_t> to) const;

 private:
  size_t IndexCount() const { return indices_ ? indices_->size() : points_->size(); }
  template <class Use>
  void ForEachTriangle(const Use& use) const;
  /// Writes three numbers for each triangle, which `numberAt` gives for its vertices and their places in it.
  template <class NumberAt>
  void WriteNumbers(std::span<int32_t> to, const NumberAt& numberAt) const;

  uint32_t mode_;
  std::optional<IntegerElements> indices_;
  bool isMirrored_;
  bool isPlain_ = false;  ///< the triangles have the indices as they come
  VertexNumbers points_, coordinates_;
  int32_t material_;
  size_t count_ = 0;
};

}  // namespace scene::gltf
