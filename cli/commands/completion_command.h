// SPDX-License-Identifier: MIT
#pragma once

#include "command_line/command.h"

namespace cli {

/// Adds "fbx2czp completion bash|zsh|fish": a script that lets
/// the shell complete commands, options and files.
void AddCompletionCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
