// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <set>

#include "convert/convert_model.h"

namespace cli {

/// What a package is made of beside the model's pictures: the model, files with settings (also where there could be
/// one), and this program.
std::set<std::filesystem::path> FixedInputs(const ModelTask& task, const ConvertOptions& options);

/// Whether package and document are there and none of `inputs` is newer than the package.
bool IsCurrent(const ModelTask& task, const std::set<std::filesystem::path>& inputs);

}  // namespace cli
