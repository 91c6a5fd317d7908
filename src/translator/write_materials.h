// SPDX-License-Identifier: MIT
#pragma once

#include <assimp/scene.h>

#include <string>

#include "translator/glb_data.h"

namespace translator {

/// The members "materials", "textures" and "images" of the JSON.
/// @param isTextureAlone  whether a material has a picture or a colour, never both
std::string WriteMaterials(const aiScene& scene, bool isTextureAlone, GlbData& data);

}  // namespace translator
