// SPDX-License-Identifier: MIT
#pragma once

#include "command_line/command.h"

namespace cli {

/// Adds "fbx2czp export": the model of a package for other programs. The exit status is 0, 1 when it cannot
/// be written, or 2 when the package cannot be read; files are there completely or not at all.
void AddExportCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
