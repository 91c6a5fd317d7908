// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "results/model_result.h"
#include "settings/finish_settings.h"

namespace cli {

/// Gives meshes and bones that the settings name in another letter case the names that they have, and leaves
/// out what nothing has. Of several entries for one name the last holds.
/// @param document  whose meshes are meant
/// @param bones  all bones of the skeleton
/// @return what was left out
std::vector<UnmatchedOption> ResolveNames(FinishSettings& settings, std::string_view document,
                                          const std::vector<std::string>& bones);

}  // namespace cli
