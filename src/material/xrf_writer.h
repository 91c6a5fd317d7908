// SPDX-License-Identifier: MIT
#pragma once

#include "material/material_output.h"
#include "material/material_record.h"

namespace ts3d {

/// Writes "<name>.xrf" into the model's folder, unless the mesh filter refuses the name. A file that cannot
/// be written is left out without a message.
void WriteXrfFile(const MaterialRecord& material, MaterialOutput& out);

}  // namespace ts3d
