// SPDX-License-Identifier: MIT
#pragma once

#include "commands/command.h"

namespace cli {

/// Adds "fbx2czp check": what packages would hold, and what is wrong with the rigs, without writing anything.
/// The exit status is that of the worst model: 0 sound, 1 warnings, 2 no package is possible.
void AddCheckCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
