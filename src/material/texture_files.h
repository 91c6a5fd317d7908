// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "material/material_output.h"
#include "scene/model/texture.h"

namespace ts3d {

/// Name of the ".tga" file that a package holds for the picture `source`: its base name when that contains
/// ".tga", else its base name up to the first point with ".tga" behind.
std::string TgaName(const std::string& source);

/// Brings the picture of `texture` into the package as a ".tga" file, with the host's help when it is of
/// another kind, and reports when that fails.
/// @return the picture's name in the package, whether it got there or not
std::string PackTexture(const scene::KFbxTexture& texture, MaterialOutput& out);

}  // namespace ts3d
