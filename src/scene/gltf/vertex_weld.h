// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "scene/gltf/accessors.h"
#include "scene/gltf/word_table.h"

namespace scene::gltf {

/// Makes control points of the vertices of a mesh's primitives.
class VertexWeld {
 public:
  /// @param influenceSets  of the primitive with the most, four influences each
  /// @param shapeWeights   how far each morph target counts
  VertexWeld(const AccessorReader& accessors, Budget& budget, size_t influenceSets,
             std::span<const double> shapeWeights)
      : accessors_(accessors),
        budget_(budget),
        influences_(4 * influenceSets),
        shapeWeights_(shapeWeights),
        table_(3 + 2 * influences_ + 1) {}

  /// Control point of each vertex of `primitive`. Primitives that share their vertices share the answer, which
  /// stays until the next call.
  /// @throws Fault
  const std::vector<int32_t>& PointsOf(const Primitive& primitive);

  size_t PointCount() const { return table_.size(); }
  /// x, y, z of a point in the mesh's space.
  KFbxVector4 PositionOf(uint32_t point) const;
  /// Calls `visit` with the joint and the weight of every influence on a point.
  template <class Visit>
  void ForEachInfluence(uint32_t point, const Visit& visit) const {
    const uint32_t* words = table_.At(point) + 3;
    for (size_t i = 0; i < influences_; ++i) {
      const float weight = ToFloat(words[influences_ + i]);
      if (weight != 0.0f) visit(words[i], weight);
    }
  }

 private:
  struct Attributes {
    std::vector<float> positions, normals;
    std::vector<uint32_t> joints;  ///< `influences_` for each vertex
    std::vector<float> weights;
  };

  static uint32_t ToWord(float number);
  static float ToFloat(uint32_t word);
  Attributes ReadAttributes(const Primitive& primitive) const;
  void ReadInfluences(const Primitive& primitive, size_t vertexCount, Attributes& attributes) const;
  void JoinSets(const Primitive& primitive, size_t sets, size_t vertexCount, Attributes& attributes) const;
  void Weld(const Attributes& attributes);
  bool IsOpposed(uint32_t point, const float* normal) const;

  const AccessorReader& accessors_;
  Budget& budget_;
  size_t influences_;
  std::span<const double> shapeWeights_;
  WordTable table_;
  std::vector<float> normals_;  ///< of the vertex that each point was made for
  std::vector<uint32_t> shared_;
  std::vector<int32_t> points_;
};

}  // namespace scene::gltf
