// SPDX-License-Identifier: MIT
#pragma once

#include "command_line/command.h"

namespace cli {

/// Adds "fbx2czp repack": a package without the members that later ones of the same name replaced. The exit
/// status is 0; whatever goes wrong, the package is as it was.
void AddRepackCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
