// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "convert/convert_options.h"
#include "convert/job_host.h"
#include "convert/model_result.h"
#include "finish/finish_settings.h"
#include "host/host_paths.h"
#include "platform/file_system.h"

namespace cli {

/// One model of a command line.
struct ModelTask {
  std::string name;           ///< as the user wrote it
  platform::fs::path model;   ///< absolute
  platform::fs::path folder;  ///< where package and document go; absolute
  std::string stem = {};      ///< of the names of both; empty: the model's

  platform::fs::path Package() const;
  /// What the model is called in its work folder.
  std::string NameInWork() const;
};

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
