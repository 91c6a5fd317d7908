// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "convert_model.h"

namespace cli {

/// The models that the command line names: files as they are, and all ".fbx" files below folders, sorted.
/// Below an output folder the models of a folder keep their subfolders.
std::vector<ModelTask> FindModels(const ConvertOptions& options);

}  // namespace cli
