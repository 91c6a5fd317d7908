// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "core/repair_settings.h"
#include "driver/conversion_job.h"

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

/// Finds out which repairs the model that `job` has loaded needs beside those of `job.settings.repairs`, by trying
/// them on its skeleton: each is chosen only if fewer things are wrong with it than without.
ChosenRepairs ChooseRepairs(const ConversionJob& job);

/// The sets of repairs that are worth a try on that model, the smallest first. All lose as few bones as can be, and
/// no set has a repair that finds nothing to do. The first is `job.settings.repairs` alone, unless that loses bones that
/// others keep.
std::vector<RepairSettings> CandidateRepairs(const ConversionJob& job);

/// Tells what each repair of `settings` is needed for, beside those of `job.settings.repairs`.
ChosenRepairs DescribeRepairs(const ConversionJob& job, const RepairSettings& settings);

}  // namespace ts3d
