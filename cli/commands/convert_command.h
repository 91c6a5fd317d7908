// SPDX-License-Identifier: MIT
#pragma once

#include "commands/command.h"

namespace cli {

/// Adds "fbx2czp convert": models into packages. The exit status is 0, or that of the first model that failed; a model that fails does not stop the others.
void AddConvertCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
