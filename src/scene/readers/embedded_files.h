// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "scene/model/scene.h"

namespace scene {

/// Writes the pictures that are embedded in the model `modelPath` into the folder "<model name>.fbm" beside
/// it, as base names only, unless a file of that name and size is there, and points the textures to them. A
/// picture that cannot be written leaves its texture as it is.
/// @param write  false: the textures point to where the pictures would be, and nothing is written
void ExtractEmbeddedFiles(KFbxScene& scene, std::string_view modelPath, bool write);

}  // namespace scene
