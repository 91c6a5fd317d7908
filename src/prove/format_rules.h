// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "actor/actor.h"
#include "prove/match_meshes.h"

namespace prove {

/// A bone as the rules of the format have it, which cannot hold all that rigs do.
struct RuleBone {
  Affine local;  ///< frame relative to the parent
  Affine space;  ///< frame of the bone space
};

/// The bones of `skeleton` by the rules; what the converter made itself is taken as it is.
std::vector<RuleBone> BonesByRule(const actor::Skeleton& skeleton, const ModelRig& rig);

/// Where the rules put the points of a mesh, in the space of the files. The first is by the main bind pose.
/// When others count as well, the rules may have moved on to one of them that has the mesh.
std::vector<std::vector<Point>> PlacePointsByRule(const ModelMesh& mesh, const ModelRig& rig);

/// Whether the bind pose that counts by the rules has the node.
bool IsBoundByRule(const RigNode& node, const ModelRig& rig);

/// The bone that the rules give weights for `node` to: the first of its name; -1 when there is none.
int32_t BoneByRule(const scene::KFbxNode& node, const actor::Skeleton& skeleton);

}  // namespace prove
