// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "options/convert_options.h"
#include "platform/file_system.h"
#include "results/model_result.h"

namespace cli {

/// What --max-influences costs a model, as a clause; empty when it cannot be compared.
/// @param model  absolute
std::string CostOfInfluences(const platform::fs::path& model, const ConvertOptions& options);

/// Compares the package that `result` is about with its model, and adds to its faults and notes what came out:
/// what --max-influences costs and, with --prove, everything.
void ProveConversion(const platform::fs::path& model, const platform::fs::path& package,
                     const ConvertOptions& options, ModelResult& result);

}  // namespace cli
