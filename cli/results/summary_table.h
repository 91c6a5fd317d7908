// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "results/model_result.h"

namespace cli {

/// A table with a line for each model and one for all of them.
/// @param columns  of the terminal that it is for: names are shortened, and what matters least is left out;
/// 0: as wide as it gets
std::string SummaryTable(const std::vector<ModelResult>& results, double seconds, size_t columns);

}  // namespace cli
