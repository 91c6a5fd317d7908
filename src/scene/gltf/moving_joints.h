// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/gltf/accessors.h"

namespace scene::gltf {

/// Which nodes move vertices, as joints of a skin that is worn; all joints where that would take too long to find out.
/// @throws Fault
std::vector<bool> FindMovingJoints(const Document& document, const AccessorReader& accessors, Budget& budget);

}  // namespace scene::gltf
