// SPDX-License-Identifier: MIT
#include "settings/model_settings.h"

#include "settings/settings_places.h"

namespace cli {
namespace fs = platform::fs;

std::optional<SettingsFile> FindSettings(const fs::path& model, const ConvertOptions& options) {
  const std::vector<fs::path> inputs = SettingsPlaces(model, options);
  std::error_code unknown;
  if (inputs.empty() || (options.settingsFile.empty() && !fs::is_regular_file(inputs.back(), unknown)))
    return std::nullopt;
  return SettingsFile(inputs.back());
}

ModelOptions OptionsOf(const fs::path& model, const ConvertOptions& options,
                       const std::optional<FinishSettings>& finish) {
  ModelOptions found{options, std::nullopt};
  if (const std::optional<SettingsFile> file = FindSettings(model, options)) {
    for (const Setting& setting : file->SettingsOf(model))
      ApplySetting(setting, file->Path().parent_path(), found);
  }
  if (finish && found.finish) {
    AddSettings(*finish, *found.finish);
  } else if (finish) {
    found.finish = finish;
  }
  return found;
}

}  // namespace cli
