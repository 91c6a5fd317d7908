// SPDX-License-Identifier: MIT
#pragma once

#include "command_line/command.h"

namespace cli {

/// Adds "fbx2czp check": what packages would hold, and what is wrong with the rigs, without writing anything.
/// The exit status is 0 for sound models, 1 after warnings, else why a model makes no package.
void AddCheckCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
