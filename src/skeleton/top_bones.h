// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "scene/model/scene.h"

namespace ts3d {

/// The bones of `scene` that stand below no other one, in the order in which extraction comes to them.
/// @param openGroups  whether nodes without an attribute are passed; else they hide all bones below them
std::vector<const scene::KFbxNode*> FindTopBones(const scene::KFbxScene& scene, bool openGroups);

/// A name for a bone above all others that no bone of `scene` has.
std::string NameForNewRoot(const scene::KFbxScene& scene);

}  // namespace ts3d
