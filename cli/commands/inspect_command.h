// SPDX-License-Identifier: MIT
#pragma once

#include "command_line/command.h"

namespace cli {

/// Adds "fbx2czp inspect": what a package holds and what is wrong with it. The exit status is 0, 1 when
/// something is wrong, or 2 when the package cannot be read.
void AddInspectCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
