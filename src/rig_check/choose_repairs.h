// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "core/repair_settings.h"
#include "skeleton/model_source.h"

namespace ts3d {

/// One repair that a model needs.
struct NeededRepair {
  std::string option;  ///< of the tool, "--join-roots"
  std::string reason;  ///< what goes wrong without it, and how many times
};

struct ChosenRepairs {
  RepairSettings settings;
  std::vector<NeededRepair> needed;
};

/// Finds out which repairs a loaded model needs beside those of `model.settings.repairs`, by trying
/// them on its skeleton: each is chosen only if fewer things are wrong with it than without.
ChosenRepairs ChooseRepairs(const ModelSource& model);

/// The sets of repairs that are worth a try on that model, the smallest first. All lose as few bones as can be, and
/// no set has a repair that finds nothing to do. The first is `model.settings.repairs` alone, unless that loses bones that
/// others keep.
std::vector<RepairSettings> CandidateRepairs(const ModelSource& model);

/// Tells what each repair of `settings` is needed for, beside those of `model.settings.repairs`.
ChosenRepairs DescribeRepairs(const ModelSource& model, const RepairSettings& settings);

}  // namespace ts3d
