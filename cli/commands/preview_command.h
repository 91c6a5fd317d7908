// SPDX-License-Identifier: MIT
#pragma once

#include "command_line/command.h"

namespace cli {

/// "fbx2czp preview PACKAGE|MODEL -o FILE": shows what is in a package, as a picture or a page.
void AddPreviewCommand(CLI::App& app, RunCommand& run);

}  // namespace cli
