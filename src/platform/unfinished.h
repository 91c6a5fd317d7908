// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace platform {

// The files and folders that are of no use unless somebody completes them, so that a process that has to end
// at once can take them away.

/// Calls `make`, which makes a file or folder and returns its path, and notes that. Nothing is noted when it
/// returns an empty path.
std::string MakeUnfinished(const std::function<std::string()>& make);

/// Forgets what was noted: it is complete, or gone.
void ForgetUnfinished(const std::string& path);

/// Removes all that is noted. The process has to end then: whoever makes more waits for ever.
void RemoveUnfinished();

}  // namespace platform
