// SPDX-License-Identifier: MIT
#pragma once

#include "scene/model/scene.h"

namespace scene {

/// What the nodes and meshes of `scene` ask for that no honest file of its size does, in words; empty when
/// all is well. Nothing is decoded: the check comes before the memory and time are spent.
/// @param fileSize  bytes
/// @param allowance  bytes of memory that the conversion of one mesh may take
KString FindExcessiveClaim(const KFbxScene& scene, uint64_t fileSize, uint64_t allowance);

}  // namespace scene
