// SPDX-License-Identifier: MIT
#pragma once

#include <set>

#include "convert/model_task.h"
#include "options/convert_options.h"
#include "platform/file_system.h"

namespace cli {

/// What a package is made of beside the model's pictures: the model, files with settings (also where there could be
/// one), and this program.
std::set<platform::fs::path> FixedInputs(const ModelTask& task, const ConvertOptions& options);

/// Whether package and document are there and none of `inputs` is newer than the package.
bool IsCurrent(const ModelTask& task, const std::set<platform::fs::path>& inputs);

}  // namespace cli
