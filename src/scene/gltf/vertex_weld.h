// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "base/mixed_hash.h"
#include "scene/gltf/accessors.h"
#include "scene/gltf/control_points.h"
#include "scene/gltf/number_table.h"
#include "scene/gltf/triangle_list.h"

namespace scene::gltf {

/// Makes control points of the vertices of a mesh's primitives.
class VertexWeld {
 public:
  /// @param influenceSets  of the primitive with the most
  /// @param shapeWeights   how far each morph target counts
  VertexWeld(const AccessorReader& accessors, Budget& budget, size_t influenceSets,
             std::span<const double> shapeWeights, ControlPoints& points);

  /// Control point of each vertex of `primitive`.
  /// @throws Fault
  VertexNumbers PointsOf(const Primitive& primitive);

 private:
  Vertices ReadVertices(const Primitive& primitive) const;
  FloatElements ReadPositions(const Primitive& primitive) const;
  /// Numbers of the vertices that were added last.
  FbxArray<int32_t> Weld();
  [[gnu::noinline]] uint32_t PointOf(const Vertices& vertices, size_t vertex, uint64_t digest, uint64_t hash);
  uint64_t Digest(const Quad& position) const;
  uint64_t DigestOf(uint32_t point) const;
  bool IsBack(uint32_t point) const;
  /// Few vertices have another of one digest: those that have none do without what this needs.
  [[gnu::noinline]] bool IsEqual(uint32_t point, bool isBack, const Vertices& vertices, size_t vertex) const;
  [[gnu::noinline]] bool IsOpposed(uint32_t point, const Vertices& vertices, size_t vertex) const;

  const AccessorReader& accessors_;
  Budget& budget_;
  size_t influenceSets_;
  std::span<const double> shapeWeights_;
  ControlPoints& points_;
  Quad secrets_{};               ///< for the words of a position
  std::vector<uint32_t> backs_;  ///< points that are the other side of one that was there before
  NumberTable table_;
  uint64_t vertexCount_ = 0;
  std::vector<uint32_t> sharedAccessors_;  ///< those that `shared_` comes from
  VertexNumbers shared_;
};

}  // namespace scene::gltf
