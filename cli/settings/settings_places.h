// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <vector>

#include "convert/convert_options.h"

namespace cli {

/// Where a model's settings file is looked for: where the options say, else beside the model and in the folders above,
/// the nearest first, up to the one that is there. Empty when the options want none.
std::vector<std::filesystem::path> SettingsPlaces(const std::filesystem::path& model,
                                                  const ConvertOptions& options);

}  // namespace cli
