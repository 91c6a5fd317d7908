// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "status_printer.h"

namespace cli {

/// What "fbx2czp convert" was asked for.
struct ConvertOptions {
  std::vector<std::string> models;
  std::string outputFolder;  ///< empty: beside each model
  int32_t rotationY = 0;
  int32_t rotationX = 0;
  std::vector<std::string> boneRenames;  ///< "old=new"
  int32_t meshMode = 0;
  std::vector<std::string> meshes;
  std::vector<std::string> doubleSidedMeshes;
  std::vector<std::string> excludedNames;
  std::string finishSettings;  ///< JSON file with final settings, or empty
  Verbosity verbosity = Verbosity::Normal;
};

/// Converts every model, one after the other; a model that fails does not stop the others.
/// @return 0, or the result code of the first model that failed
int RunConvert(const ConvertOptions& options);

}  // namespace cli
