// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <system_error>

#include "platform/file_system.h"

namespace platform {

/// What WalkFolder does next.
enum class Walk { On, Stop };

/// Calls `visit` with each entry below `folder`, in no order. Links to folders are not followed, folders that are
/// `deepest` levels down not looked into. Folders that cannot be read, the first included, are passed to `unread` with the reason, and the walk goes
/// on without them.
void WalkFolder(const fs::path& folder, int deepest,
                const std::function<Walk(const fs::directory_entry&)>& visit,
                const std::function<void(const fs::path& folder, std::error_code reason)>& unread);

}  // namespace platform
