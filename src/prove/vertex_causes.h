// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "prove/bone_facts.h"
#include "prove/compare.h"

namespace prove {

/// Why a vertex is not where the model has it.
struct VertexCause {
  Cause cause = Cause::None;
  int32_t node = -1;  ///< of the model that it is about; -1: the mesh
};

/// Finds the causes of the vertices of one mesh file.
class VertexCauses {
 public:
  VertexCauses(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches, size_t mesh,
               const std::vector<BoneFacts>& facts, const NodeFacts& nodes, double diagonal,
               int mostInfluences);

  /// @param kind  of the pose that shows it
  VertexCause Of(size_t vertex, Pose::Kind kind) const;

 private:
  using Weights = std::vector<std::pair<int32_t, double>>;  ///< by bone, ascending, adding up to 1

  Weights StoredWeights(const actor::Vertex& vertex) const;
  /// None when the package cannot have them.
  Weights ModelWeights(size_t point) const;
  Weights RuleWeights(size_t point) const;
  VertexCause OfWeights(size_t vertex, size_t point) const;
  VertexCause OfPlace(size_t vertex, size_t point) const;
  VertexCause OfBones(size_t vertex, Pose::Kind kind) const;
  VertexCause OfBinding(size_t point, Pose::Kind kind) const;

  const actor::Skeleton& skeleton_;
  const ModelRig& rig_;
  const MatchedMesh& mesh_;
  const ModelMesh& model_;
  const std::vector<BoneFacts>& facts_;
  const NodeFacts& nodes_;
  double diagonal_;
  size_t mostInfluences_;                  ///< 0: all
  bool hasBones_ = false;                  ///< some bone of the package is one of the model
  std::vector<Point> places_;              ///< of the control points at bind time
  std::vector<std::vector<Point>> rules_;  ///< of PlacePointsByRule
  std::vector<int32_t> ruleBones_;         ///< that the rules give each influence's weights to
};

}  // namespace prove
