// SPDX-License-Identifier: MIT
#pragma once

#include "actor/actor.h"
#include "platform/file_system.h"
#include "terminal/messages.h"

namespace cli {

/// Reads the package `path`, or a folder with the files of one, and warns of what is wrong with its files.
/// @throws Failure when it is not there or cannot be read
void LoadPackage(const platform::fs::path& path, actor::Actor& actor, Messages& messages);

}  // namespace cli
