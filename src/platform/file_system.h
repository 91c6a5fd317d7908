// SPDX-License-Identifier: MIT
#pragma once

// The file system as all other folders use it: namespace platform::fs. It is std::filesystem, but for Windows, where the
// library's own takes text for Latin-1, ends paths at 260 characters and drops what it cannot read.
#ifdef _WIN32
#include "platform/file_system_windows.h"
#else
#include <filesystem>

namespace platform {

namespace fs = std::filesystem;

/// `path` as the streams of the C++ library take it.
inline const fs::path& ForStream(const fs::path& path) { return path; }

}  // namespace platform
#endif
