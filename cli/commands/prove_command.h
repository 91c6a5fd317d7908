// SPDX-License-Identifier: MIT
#pragma once

#include "command_line/command.h"

namespace cli {

/// Adds "fbx2czp prove".
void AddProveCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
