// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// In place of what std::filesystem has for this, which ends the process when there is no memory. Paths are
// given as the system's calls take them.

struct FolderEntry {
  enum class Kind { File, Folder, Link, Other };

  std::string name;
  Kind kind = Kind::Other;
};

/// What lies in the folder `path`, in no order; none when that cannot be told.
/// @param most  entries beyond so many are left out
std::optional<std::vector<FolderEntry>> ListFolder(const std::string& path, size_t most = SIZE_MAX);

/// Deletes the file or folder `path` with all that is in it, links as such; false when something is left.
bool RemoveTree(const std::string& path) noexcept;

}  // namespace platform
