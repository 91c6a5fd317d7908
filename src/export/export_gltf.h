// SPDX-License-Identifier: MIT
#pragma once

#include "export/export_model.h"

namespace actor {

/// The actor as a binary glTF 2.0 file with skeleton, skin, materials and pictures; numbers and axes are
/// those of the actor.
/// @param generator name and version of the program
/// @throws std::runtime_error when the actor is larger than the format allows
std::string ExportGlb(const Actor& actor, const std::string& generator, const PictureEncoder& encode);

/// The same as "<stem>.gltf" with "<stem>.bin" and a "<stem>_<picture>.png" for each picture that is used. The
/// .gltf file comes last: the others are there when it appears.
std::vector<ExportedFile> ExportGltf(const Actor& actor, const std::string& generator,
                                     const std::string& stem, const PictureEncoder& encode);

}  // namespace actor
