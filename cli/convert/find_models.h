// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "convert/model_task.h"
#include "host/find_files.h"
#include "options/convert_options.h"

namespace cli {

/// The models that the command line names: files as they are, and all models below folders, sorted. Packages go
/// beside each model.
/// @throws Failure when `names` are folders without any model or cannot be looked into
std::vector<ModelTask> FindModels(const std::vector<std::string>& names);

/// The same for all models of a conversion: those of the command line and of the list. Packages go into the output
/// folder, below which the models of a folder keep their subfolders; models of the list, and with a base all models,
/// keep their folders below the base, which is the current folder unless it is given. That of one model may also be
/// named, as "name.czp".
/// @throws Failure as well when a model is not below the base, and when the output cannot be meant
std::vector<ModelTask> FindModels(const ConvertOptions& options, Unread unread = Unread::Tell);

}  // namespace cli
