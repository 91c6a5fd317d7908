// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "skeleton/bone_node.h"

namespace ts3d {

/// The control, twist and inverse bone blocks for which `bones` has both of the bones that they need.
std::string ControlBoneBlocks(const BoneTree& bones);

}  // namespace ts3d
