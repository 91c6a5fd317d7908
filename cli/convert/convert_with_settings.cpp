// SPDX-License-Identifier: MIT
#include "convert/convert_with_settings.h"

#include <stdexcept>

#include "convert/made_with.h"
#include "options/mesh_options.h"
#include "settings/model_settings.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;

ModelResult ConvertWithSettings(const ModelTask& task, const fs::path& shown, const ConvertOptions& options,
                                const std::optional<FinishSettings>& finish, const TakeStatus& onStatus) {
  ModelOptions found;
  try {
    found = OptionsOf(task.model, options, finish);
    CheckMeshOptions(found.options);
    if (options.update && !WasMadeWith(task, options)) found.options.update = false;
  } catch (const std::runtime_error& error) {
    ModelResult result;
    result.code = kUsageError;
    result.reason = error.what();
    return result;
  }
  return ConvertInWorkFolder(task, shown, found.options, found.finish, onStatus);
}

}  // namespace cli
