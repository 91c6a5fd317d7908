// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "convert/job_host.h"
#include "convert/model_task.h"
#include "host/host_paths.h"
#include "options/convert_options.h"
#include "platform/file_system.h"
#include "results/model_result.h"
#include "settings/finish_settings.h"

namespace cli {

/// Converts the model inside its work folder, where everything that is written stays.
/// @param shown  the model there (WorkFolder::Model)
ModelResult ConvertInWorkFolder(const ModelTask& task, const platform::fs::path& shown,
                                const ConvertOptions& options, const std::optional<FinishSettings>& finish,
                                const TakeStatus& onStatus);

/// Moves a converted model's document and package from `work` to where they belong.
/// @param shrunkPictures  files that do not stay for the next conversion
/// @return the names of the files beside the package
/// @throws platform::fs::filesystem_error when that fails, or the package is not there afterwards
std::vector<std::string> Publish(const ModelTask& task, const WorkFolder& work,
                                 const std::vector<std::string>& shrunkPictures);

}  // namespace cli
