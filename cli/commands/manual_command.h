// SPDX-License-Identifier: MIT
#pragma once

#include "command_line/command.h"

namespace cli {

/// Adds "fbx2czp manual": the manual page, made from the texts of --help.
void AddManualCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
