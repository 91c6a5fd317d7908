// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "rig_check/bone_places.h"
#include "rig_check/rig_faults.h"
#include "skeleton/model_source.h"

namespace ts3d {

/// A bone that stands elsewhere than something says.
struct BoneGap {
  int32_t bone = -1;
  Gap gap;
};

/// Where the skins of a model are, compared with the bones of its package. Visible gaps only.
struct SkinGaps {
  struct OfMesh {
    const MeshFacts* mesh;
    bool isPosed;   ///< the mesh is in the bind pose
    BoneGap worst;  ///< the bone that its skin is farthest off from
  };
  std::vector<OfMesh> ofMeshes;    ///< whose skin is not where bone space has the bones
  std::vector<BoneGap> atRest;     ///< bones that do not stand where bone space has them
  std::vector<BoneGap> fromBound;  ///< bones with another place in the bind pose than in their skin
  std::vector<BoneGap>
      fromPresent;  ///< bones that the bind pose lacks, with another place than in their skin
};

/// Measures the skins of `meshes` against a skeleton that was extracted from their model.
/// @param size  the model's
SkinGaps MeasureSkins(const ModelSource& model, SkeletonState& skeleton, const std::vector<MeshFacts>& meshes,
                      double size);

}  // namespace ts3d
