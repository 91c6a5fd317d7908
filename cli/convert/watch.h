// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

#include "convert/convert_model.h"

namespace cli {

/// What came of some models.
struct ConvertedModels {
  std::vector<ModelResult> results;  ///< in the order of the models; when interrupted only the finished ones
  bool isInterrupted = false;
  int exitStatus = 0;
};

/// Converts models, as one run of the tool does.
using ConvertModels = std::function<ConvertedModels(const std::vector<ModelTask>& models)>;

/// Converts the models of `options`, and again those of which a file that they are made of changes, until it
/// is interrupted. New models in folders are found. A file counts when it has been the same for half a second.
/// @return the exit status of the interruption
int WatchModels(const ConvertOptions& options, const ConvertModels& convert);

}  // namespace cli
