// SPDX-License-Identifier: MIT
#pragma once

#include "core/conversion_job.h"
#include "material/material_record.h"

namespace ts3d {

/// Writes "<name>.xrf" into the model's folder, unless the mesh filter refuses the name. A file that cannot
/// be written is left out without a message.
void WriteXrfFile(const MaterialRecord& material, ConversionJob& job);

}  // namespace ts3d
