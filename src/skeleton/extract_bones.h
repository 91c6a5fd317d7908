// SPDX-License-Identifier: MIT
#pragma once

#include "skeleton/model_source.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// Quaternion of Euler angles x, y, z in degrees, as the skeleton file keeps every rotation: the scalar part
/// is negated, because the runtime turns by the inverse of what it reads.
scene::KFbxQuaternion EulerToQuaternion(const scene::KFbxVector4& degrees);

/// Makes bone 0 a new root at the origin of the world when the model
/// has several top-level skeletons: ExtractBones then puts all of them below
/// it, without scale. To be called before the first bone is extracted.
void JoinRoots(const ModelSource& model, SkeletonState& skeleton);

/// Adds a bone to `skeleton` for every skeleton node at or below `node`, depth first, and reports
/// what will not import well. Nodes without an attribute hide everything below them.
/// @param node  a child of the scene's root
void ExtractBones(const scene::KFbxNode& node, const ModelSource& model, SkeletonState& skeleton);

}  // namespace ts3d
