// SPDX-License-Identifier: MIT
#pragma once

#include "core/conversion_job.h"
#include "scene/model/scene.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// Quaternion of Euler angles x, y, z in degrees, as the skeleton file keeps every rotation: the scalar part
/// is negated, because the runtime turns by the inverse of what it reads.
scene::KFbxQuaternion EulerToQuaternion(const scene::KFbxVector4& degrees);

/// Makes bone 0 a new root at the origin of the world when the job's scene
/// has several top-level skeletons: ExtractBones then puts all of them below
/// it, without scale. To be called before the first bone is extracted.
void JoinRoots(ConversionJob& job);

/// Adds a bone to the job's skeleton for every skeleton node at or below `node`, depth first, and reports
/// what will not import well. Nodes without an attribute hide everything below them.
/// @param node  a child of the scene's root
void ExtractBones(const scene::KFbxNode& node, ConversionJob& job);

}  // namespace ts3d
