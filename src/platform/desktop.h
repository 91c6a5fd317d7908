// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// Whether the process has a console of its own that a person looks at, and that goes when the process ends: files were
/// dropped on the program on Windows. Where output or input go elsewhere, nobody is there to look.
bool OwnsConsole();

/// Waits until somebody presses a key.
void WaitForKey();

/// Opens the file `path` with the program that this user has for such files. @return whether there is one
bool OpenForUser(const std::string& path);

}  // namespace platform
