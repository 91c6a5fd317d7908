// SPDX-License-Identifier: MIT
#pragma once

#include "command_line/command.h"

namespace cli {

/// Adds "fbx2czp diff".
void AddDiffCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
