// SPDX-License-Identifier: MIT
#pragma once

#include "export/export_model.h"

namespace actor {

/// The actor at rest as "<stem>.obj" with "<stem>.mtl" and a "<stem>_<picture>.png"
/// for each picture that is used; numbers and axes are those of the actor. The
/// .obj file comes last: the others are there when it appears.
std::vector<ExportedFile> ExportObj(const Actor& actor, const std::string& stem,
                                    const PictureEncoder& encode);

}  // namespace actor
