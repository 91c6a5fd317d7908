// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/document.h"

namespace scene::gltf {

class JsonValue;

/// @throws Fault
std::vector<Image> ReadImages(JsonValue images, size_t viewCount);

/// Materials with the images of their textures.
/// @throws Fault
std::vector<Material> ReadMaterials(JsonValue materials, JsonValue textures, size_t imageCount);

}  // namespace scene::gltf
