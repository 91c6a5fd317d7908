// SPDX-License-Identifier: MIT
#pragma once

#include "scene/math/matrix.h"
#include "scene/model/scene.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// Takes the scene's first bind pose with the largest number of
/// nodes, and notes when another one is as large.
void ChooseBindPose(const scene::KFbxScene& scene, SkeletonState& skeleton);

/// Makes the pose in which the skins were bound the bind pose.
/// @return whether there is one
bool TakeBindPoseOfSkins(const scene::KFbxScene& scene, SkeletonState& skeleton);

/// Index of `node` in the bind pose, or -1. When the choice of the bind pose was ambiguous and it lacks the
/// node, the first bind pose that has it becomes the bind pose.
int BindPoseIndex(const scene::KFbxNode* node, const scene::KFbxScene& scene, SkeletonState& skeleton);

/// World transform of entry `index` of the bind pose.
const scene::KFbxXMatrix& BindMatrix(int index, const SkeletonState& skeleton);

/// World transform of `node` at bind time. What the bind pose lacks goes along with its next ancestor in
/// there, as the skeleton file has it; without one it stands as it does now.
scene::KFbxXMatrix BindWorld(const scene::KFbxNode& node, const scene::KFbxScene& scene,
                             SkeletonState& skeleton);

}  // namespace ts3d
