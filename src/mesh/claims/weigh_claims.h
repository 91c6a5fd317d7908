// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "scene/model/scene.h"

namespace ts3d {

/// What the nodes and meshes of `scene` ask for that no honest file of its size does, in words; empty when all is well,
/// and each mesh knows then how much memory what its arrays hold may take. Nothing is decoded: the check comes before
/// the memory and time are spent.
std::string WeighClaims(scene::KFbxScene& scene);

}  // namespace ts3d
