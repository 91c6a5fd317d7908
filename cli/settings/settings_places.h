// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "options/convert_options.h"
#include "platform/file_system.h"

namespace cli {

/// Where a model's settings file is looked for: where the options say, else beside the model and in the folders above,
/// the nearest first, up to the one that is there. Empty when the options want none.
std::vector<platform::fs::path> SettingsPlaces(const platform::fs::path& model,
                                               const ConvertOptions& options);

}  // namespace cli
