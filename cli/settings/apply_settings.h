// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "options/convert_options.h"
#include "platform/file_system.h"
#include "settings/finish_settings.h"
#include "settings/settings_file.h"

namespace cli {

/// The keys that a settings file may have, in the order in which they are shown.
const std::vector<std::string>& SettingKeys();

/// What holds when nobody says anything.
std::string DefaultOf(const std::string& key);

/// What one model is converted with.
struct ModelOptions {
  ConvertOptions options;
  std::optional<FinishSettings> finish;
};

/// Applies a setting. What the command line says (`ConvertOptions::given`) stays; lists add up.
/// @param folder  of the settings file, which folders in it are relative to
/// @throws std::runtime_error when the value is none for its key
void ApplySetting(const Setting& setting, const platform::fs::path& folder, ModelOptions& target);

/// Throws as ApplySetting does.
void CheckSetting(const Setting& setting);

}  // namespace cli
