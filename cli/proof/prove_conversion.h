// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "convert/model_result.h"

namespace cli {

/// Compares the package that `result` is about with its model, and adds to its faults and notes what came out.
void ProveConversion(const std::filesystem::path& model, const std::filesystem::path& package,
                     ModelResult& result);

}  // namespace cli
