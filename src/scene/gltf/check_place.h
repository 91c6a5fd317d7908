// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/document.h"

namespace scene::gltf {

/// Refuses what cannot stand in a package, whose numbers are floats.
/// @param place  of `node`, or of the mesh that it wears, in the world
/// @throws Fault that names the node
void CheckPlace(const Document& document, uint32_t node, const KFbxXMatrix& place);

}  // namespace scene::gltf
