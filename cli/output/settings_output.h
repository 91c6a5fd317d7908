// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "settings/settings_file.h"

namespace cli {

/// A model and what its settings file says of it.
struct ModelSettings {
  std::string model;  ///< as the user gave it
  std::optional<SettingsFile> file;
  std::string error;  ///< what is wrong with the file; empty for nothing
};

/// What holds for the model, line by line, and where it comes from.
std::string SettingsAsText(const ModelSettings& settings);

/// All of them as one JSON text; docs/settings.md describes it.
std::string SettingsAsJson(const std::vector<ModelSettings>& models);

}  // namespace cli
