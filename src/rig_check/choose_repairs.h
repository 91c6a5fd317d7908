// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "core/conversion_job.h"
#include "core/repair_settings.h"

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

/// Finds out which repairs the model that `job` has loaded needs beside those of `job.repairs`, by trying
/// them on its skeleton: each is chosen only if fewer things are wrong with it than without.
ChosenRepairs ChooseRepairs(const ConversionJob& job);

}  // namespace ts3d
