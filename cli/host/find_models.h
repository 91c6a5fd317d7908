// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "convert/convert_model.h"

namespace cli {

/// All files below `folder` with `extension`, in any letter case, sorted.
/// @throws Failure when it cannot be looked into
std::vector<std::filesystem::path> FilesBelow(const std::string& folder, const char* extension);

/// The models that the command line names: files as they are, and all ".fbx" files below folders, sorted.
/// @param output  where packages go: a folder, below which the models of a folder keep their subfolders; of
/// one model also the package, "name.czp"; empty: beside each model
/// @throws Failure when `names` are folders without any model or cannot be looked into, and when `output`
/// cannot be meant
std::vector<ModelTask> FindModels(const std::vector<std::string>& names, const std::string& output = {});

}  // namespace cli
