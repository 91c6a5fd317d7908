// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "scene/model/mesh.h"
#include "skeleton/model_source.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// What one bone contributes to a vertex.
struct BoneWeight {
  int32_t bone;
  float weight;  ///< not normalised
};

/// The influences of every control point of a mesh, in ascending order of the bones.
class InfluenceTable {
 public:
  InfluenceTable() = default;
  /// @param rows  end of each control point's influences in `weights`
  InfluenceTable(std::vector<uint32_t> rowEnds, scene::FbxArray<BoneWeight> weights)
      : rowEnds_(std::move(rowEnds)), weights_(std::move(weights)) {}

  std::span<const BoneWeight> Of(int32_t controlPoint) const {
    const auto i = static_cast<size_t>(controlPoint);
    if (i >= rowEnds_.size()) return {};
    const size_t begin = i == 0 ? 0 : rowEnds_[i - 1];
    return weights_.View().subspan(begin, rowEnds_[i] - begin);
  }
  /// Influences of all control points together.
  size_t Count() const { return weights_.size(); }

 private:
  std::vector<uint32_t> rowEnds_;
  scene::FbxArray<BoneWeight> weights_;
};

/// Identifier of the bone that clusters with this link give their weights to, or -1.
/// @param name  receives the name that was looked up last
int32_t BoneOfLink(const scene::KFbxNode& link, const ModelSource& model, const SkeletonState& skeleton,
                   std::string& name);

/// Gathers the weights of every skin cluster of `mesh` and marks the bones that carry weight. A cluster whose
/// link names no bone adds nothing and is reported; one without a link adds nothing silently.
InfluenceTable GatherBoneInfluences(const scene::KFbxMesh& mesh, const ModelSource& model,
                                    SkeletonState& skeleton);

}  // namespace ts3d
