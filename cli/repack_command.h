// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace cli {

/// Rewrites the package `path` without the members that a later member of the same name supersedes. All
/// others keep their packed bytes, dates and order. The old package stays until the new one is complete.
/// @return 0, or the result code for a package that cannot be updated
int RunRepack(const std::string& path);

}  // namespace cli
