// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "options/convert_options.h"
#include "results/model_result.h"
#include "rig_check/unmatched_names.h"

namespace cli {

/// Whether an option names a part of the models.
bool NamesSomething(const ConvertOptions& options);

/// The names that options give and that nothing in a model with `targets` has.
std::vector<UnmatchedOption> FindUnmatchedOptions(const ConvertOptions& options,
                                                  const ts3d::OptionTargets& targets);

/// What is wrong with an option whose name nothing has, where `names` are those that are there.
std::string DescribeUnmatched(const UnmatchedOption& unmatched, const std::vector<std::string>& names);

/// Warnings of names that none of the converted models has: of many models, not every one has every mesh.
std::vector<ts3d::Finding> FindNamesOfNoModel(const std::vector<ModelResult>& results);

}  // namespace cli
