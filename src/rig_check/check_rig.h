// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/actor_type.h"
#include "core/settings.h"
#include "rig_check/rig_report.h"

namespace ts3d {

struct CheckOptions {
  std::vector<std::string> excludedNames;  ///< meshes and materials to leave out, in any letter case
  Plugins plugins = Plugins::Load;
  bool isQuiet = false;  ///< loads without plug-ins, and never ends the process
  /// The model, when it is not in the file; outlives the check.
  std::optional<std::string_view> source = std::nullopt;
  std::optional<ActorType> actorType = std::nullopt;  ///< whatever the path says
  std::string modelUnit = {};                         ///< see Settings
};

/// Goes through a conversion of the model `path` (with backslashes) without writing anything, and tells what
/// the package would hold and what is wrong with the rig. Whether pictures exist is left to the caller, who
/// knows where to look for them.
RigReport CheckRig(const std::string& path, const CheckOptions& options = {});

}  // namespace ts3d
