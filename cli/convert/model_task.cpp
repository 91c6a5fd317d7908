// SPDX-License-Identifier: MIT
#include "convert/model_task.h"

#include "host/find_files.h"
#include "host/host_paths.h"

namespace cli {
namespace fs = platform::fs;

fs::path ModelTask::Package() const {
  return folder / (stem.empty() ? WithExtension(model.filename(), "czp") : fs::path(stem + ".czp"));
}

std::string ModelTask::NameInWork() const {
  if (stem.empty()) return model.filename().string();
  return stem + (IsModelName(model) ? model.extension().string() : ".fbx");
}

}  // namespace cli
