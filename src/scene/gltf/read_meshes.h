// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/document.h"

namespace scene::gltf {

class JsonValue;

/// The meshes of a file.
/// @param document  has its views, accessors and materials already
/// @throws Fault
std::vector<Mesh> ReadMeshes(JsonValue root, const Document& document);

}  // namespace scene::gltf
