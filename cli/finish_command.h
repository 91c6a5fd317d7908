// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "finish_settings.h"
#include "status_printer.h"

namespace cli {

/// What "fbx2czp finish" was asked for.
struct FinishOptions {
  std::string model;
  std::string settingsFile;  ///< JSON, or empty; what the command line says comes behind it
  FinishSettings settings;
  Verbosity verbosity = Verbosity::Normal;
};

/// Applies final settings to the document and package of an earlier conversion.
/// @return the result code
int RunFinish(const FinishOptions& options);

}  // namespace cli
