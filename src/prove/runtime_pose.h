// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "actor/actor.h"
#include "prove/model_rig.h"

namespace prove {

/// Where a bone stands in its parent, as an animation sets it.
struct BonePlace {
  Turn turn;
  Point at;
};

/// The places that the skeleton file has, with every bone turned in its own frame and the root where
/// animations place it.
/// @param turns  one for each bone; none: at rest
std::vector<BonePlace> SkeletonPlaces(const actor::Skeleton& skeleton, const ModelRig& rig,
                                      const std::vector<Turn>& turns);

/// Places that put every bone where its node stands in the model.
/// @param worlds  of the rig's nodes
std::vector<BonePlace> PlacesOf(const actor::Skeleton& skeleton, const ModelRig& rig,
                                const std::vector<Affine>& worlds);

/// What a runtime multiplies vertices with.
template <typename Real>
struct BoneMatrix {
  Real rows[3][4];
};

/// The bones' places times their bone spaces. Runtimes compute in float; `Real` shows what that costs.
template <typename Real>
std::vector<BoneMatrix<Real>> PoseBones(const actor::Skeleton& skeleton,
                                        const std::vector<BonePlace>& places);

/// Where a runtime draws the vertex.
template <typename Real>
Point DrawVertex(const actor::Mesh& mesh, const actor::Vertex& vertex,
                 const std::vector<BoneMatrix<Real>>& bones);

}  // namespace prove
