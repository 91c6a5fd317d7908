// SPDX-License-Identifier: MIT
#include "settings/settings_places.h"

namespace cli {
namespace fs = platform::fs;

std::vector<fs::path> SettingsPlaces(const fs::path& model, const ConvertOptions& options) {
  if (!options.takesSettings) return {};
  if (!options.settingsFile.empty()) return {fs::absolute(options.settingsFile)};
  std::vector<fs::path> places;
  for (fs::path folder = fs::absolute(model).lexically_normal().parent_path();;
       folder = folder.parent_path()) {
    std::error_code unknown;
    places.push_back(folder / "fbx2czp.json");
    if (fs::is_regular_file(places.back(), unknown) || folder == folder.parent_path()) return places;
  }
}

}  // namespace cli
