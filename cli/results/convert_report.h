// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "results/model_result.h"

namespace cli {

/// What --report says to write to standard output.
inline constexpr const char* kStandardOutput = "-";

/// Writes the report of all models, see docs/report.md, to the file `path` in one step, or to standard
/// output.
/// @param messages  about no single model
/// @throws Failure when it cannot be written
void WriteReport(const std::string& path, const std::vector<ModelResult>& results,
                 const std::vector<ts3d::Finding>& messages, double seconds);

}  // namespace cli
