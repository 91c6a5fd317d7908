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
  /// @param jointCount     of the skin
  /// @param shapeWeights   how far each morph target counts
  VertexWeld(const AccessorReader& accessors, Budget& budget, size_t influenceSets, size_t jointCount,
             std::span<const double> shapeWeights, ControlPoints& points);

  /// Control point of each vertex of `primitive`.
  /// @throws Fault
  VertexNumbers PointsOf(const Primitive& primitive);
  /// How many vertices each joint moves.
  std::span<const uint32_t> InfluenceCounts() const { return influenceCounts_; }

 private:
  static constexpr size_t kPositionWords = 4;

  Vertices ReadVertices(const Primitive& primitive) const;
  FloatElements ReadPositions(const Primitive& primitive) const;
  /// Numbers of the vertices that were added last.
  FbxArray<int32_t> Weld();
  uint32_t PointOf(const Vertices& vertices, size_t vertex, uint64_t digest);
  void CountInfluences();
  /// Reads the position, then joint and weight of each influence, padded to pairs.
  static void ReadKey(const Vertices& vertices, size_t vertex, std::vector<uint32_t>& key);
  uint64_t Digest(const std::vector<uint32_t>& key) const;
  uint64_t DigestOf(uint32_t point);
  bool IsEqual(uint32_t point, const Vertices& vertices, size_t vertex);
  bool IsOpposed(uint32_t point, const Vertices& vertices, size_t vertex) const;

  const AccessorReader& accessors_;
  Budget& budget_;
  size_t influenceSets_;
  std::span<const double> shapeWeights_;
  ControlPoints& points_;
  std::vector<uint32_t> secrets_;         ///< one for each word of a key
  std::vector<uint32_t> key_, otherKey_;  ///< of the vertex that is looked at, and of one that may be equal
  std::vector<bool> isBack_;              ///< of each point: the other side of a point that was there before
  std::vector<uint32_t> influenceCounts_;
  NumberTable table_;
  uint64_t vertexCount_ = 0;
  std::vector<uint32_t> sharedAccessors_;  ///< those that `shared_` comes from
  VertexNumbers shared_;
};

}  // namespace scene::gltf
