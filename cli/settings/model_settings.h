// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "convert/convert_model.h"
#include "platform/file_system.h"
#include "settings/apply_settings.h"

namespace cli {

/// The settings file of a model: the one that the options name, else the nearest; none when there is none, or the
/// options want none.
/// @throws std::runtime_error as SettingsFile
std::optional<SettingsFile> FindSettings(const platform::fs::path& model, const ConvertOptions& options);

/// What the model is converted with: what its settings file says and, with the last word, the command line.
/// @throws std::runtime_error as SettingsFile
ModelOptions OptionsOf(const platform::fs::path& model, const ConvertOptions& options,
                       const std::optional<FinishSettings>& finish);

/// ConvertInWorkFolder with the model's settings; a file that holds no settings is a failure of the model.
ModelResult ConvertWithSettings(const ModelTask& task, const platform::fs::path& shown,
                                const ConvertOptions& options, const std::optional<FinishSettings>& finish,
                                const TakeStatus& onStatus);

}  // namespace cli
