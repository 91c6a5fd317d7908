// SPDX-License-Identifier: MIT
#pragma once

#include "command_line/command.h"

namespace cli {

/// Adds "fbx2czp finish": final settings for the document and package of an earlier conversion. The exit
/// status is the result code.
void AddFinishCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
