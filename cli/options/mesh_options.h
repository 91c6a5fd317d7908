// SPDX-License-Identifier: MIT
#pragma once

#include "driver/conversion_job.h"
#include "options/convert_options.h"

namespace cli {

/// @throws std::runtime_error, with the way out, when what the options say of meshes is incomplete or
/// contradicts itself
void CheckMeshOptions(const ConvertOptions& options);

/// Tells the converter which meshes get inward normals and which are drawn from both sides.
void SetMeshOptions(const ConvertOptions& options, ts3d::ConversionJob& job);

}  // namespace cli
