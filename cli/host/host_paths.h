// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "converter/work_folder.h"
#include "platform/file_system.h"

namespace cli {

using ts3d::ConverterPath;
using ts3d::TemporaryFolder;
using ts3d::WithExtension;
using ts3d::WorkFolder;

/// Whether the name ends in `extension`, as ".png", in any letter case.
bool HasExtension(const platform::fs::path& path, const char* extension);

/// Whether the name of a file or folder in `path` holds a backslash: the converter would split it there.
bool HasBackslashInName(const platform::fs::path& path);

/// Whether the file system takes the name of the file `path` in any letter case. Not known where the name has no letters.
bool IgnoresCase(const platform::fs::path& path);

/// Entries as the converter takes a list: separated by "|".
std::string JoinList(const std::vector<std::string>& entries);

/// Makes `folder` the current directory as long as it lives.
class CurrentFolder {
 public:
  explicit CurrentFolder(const platform::fs::path& folder) : before_(platform::fs::current_path()) {
    platform::fs::current_path(folder, failed_);
  }
  ~CurrentFolder() { platform::fs::current_path(before_, failed_); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  platform::fs::path before_;
  std::error_code failed_;
};

}  // namespace cli
