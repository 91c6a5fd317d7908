// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "command_line/command.h"
#include "host/child_process.h"

namespace cli {

/// Adds "fbx2czp convert": models into packages. The exit status is 0, or that of the first model that failed; a model that fails does not stop the others.
void AddConvertCommand(CLI::App& app, RunCommand& run);

/// Converts the one model of an order (ToJson of a ConvertOrder) that another process of this program has given.
void ObeyConvertOrder(const std::string& order, const ChildProcess::Send& send);

}  // namespace cli
