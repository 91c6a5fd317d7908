// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "scene/model/scene.h"

namespace ts3d {

/// The pose in which the skins of `scene` were bound, for every node: bones stand as the clusters that follow
/// them say, skinned meshes as theirs say, and what hangs on these goes along. What is left is taken from the
/// bind poses, all of them together, or as it stands now.
/// @return null when no cluster and no bind pose tells anything
std::shared_ptr<const scene::KFbxPose> BindPoseOfSkins(const scene::KFbxScene& scene);

}  // namespace ts3d
