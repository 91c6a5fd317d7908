// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

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

}  // namespace cli
