// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "convert/convert_model.h"

namespace cli {

/// The models that the command line names: files as they are, and all ".fbx" files below folders, sorted.
/// @param outputFolder where packages go, empty: beside each
/// model. Below it the models of a folder keep their subfolders.
/// @throws Failure when `names` are folders without any model, or cannot be looked into
std::vector<ModelTask> FindModels(const std::vector<std::string>& names,
                                  const std::string& outputFolder = {});

}  // namespace cli
