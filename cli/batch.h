// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "convert_model.h"

namespace cli {

/// The models that the command line names: files as they are, and all ".fbx" files below folders, sorted.
/// Below an output folder the models of a folder keep their subfolders.
std::vector<ModelTask> FindModels(const ConvertOptions& options);

/// Converts each of several models in a process of its own, as many at a time as `options` says, and tells of
/// each when it is done. Interrupted, it ends the running ones and leaves nothing of them.
/// @return results in the order of `tasks`; of an interrupted batch only the finished ones
std::vector<ModelResult> ConvertAll(const std::vector<ModelTask>& tasks, const ConvertOptions& options,
                                    const std::optional<FinishSettings>& finish, bool& interrupted);

}  // namespace cli
