// SPDX-License-Identifier: MIT
#include "convert/model_inputs.h"

#include <algorithm>

#include "host/host_paths.h"
#include "platform/process.h"
#include "settings/settings_places.h"

namespace cli {
namespace fs = platform::fs;

std::set<fs::path> FixedInputs(const ModelTask& task, const ConvertOptions& options) {
  std::set<fs::path> inputs{task.model};
  for (const fs::path& place : SettingsPlaces(task.model, options)) inputs.insert(place);
  if (!options.finishSettings.empty()) inputs.insert(fs::absolute(options.finishSettings));
  if (const std::string program = platform::ExecutablePath(); !program.empty()) inputs.insert(program);
  return inputs;
}

bool IsCurrent(const ModelTask& task, const std::set<fs::path>& inputs) {
  std::error_code failed;
  const auto made = fs::last_write_time(task.Package(), failed);
  if (failed || !fs::is_regular_file(WithExtension(task.Package(), "xfg"), failed)) return false;
  return std::all_of(inputs.begin(), inputs.end(), [&](const fs::path& input) {
    const auto changed = fs::last_write_time(input, failed);
    return failed || changed <= made;
  });
}

}  // namespace cli
