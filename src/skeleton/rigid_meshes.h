// SPDX-License-Identifier: MIT
#pragma once

#include "scene/model/mesh.h"
#include "scene/model/node.h"
#include "skeleton/bone_influences.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// Whether some skin of `mesh` has a cluster.
bool HasSkin(const scene::KFbxMesh& mesh);

/// Identifier of the bone that `node` hangs on, the next one above it, or -1.
int32_t BoneAbove(const scene::KFbxNode& node, const SkeletonState& skeleton);

/// Full weight on the bone that `node` hangs on for all points of its mesh; none when there is no such bone.
/// Marks the bone as weighted.
InfluenceTable WholeWeightOnBoneAbove(const scene::KFbxNode& node, SkeletonState& skeleton);

}  // namespace ts3d
