// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "converter/work_folder.h"

namespace cli {

using ts3d::ConverterPath;
using ts3d::TemporaryFolder;
using ts3d::WithExtension;
using ts3d::WorkFolder;

/// Whether the name of a file or folder in `path` holds a backslash: the converter would split it there.
bool HasBackslashInName(const std::filesystem::path& path);

/// Entries as the converter takes a list: separated by "|".
std::string JoinList(const std::vector<std::string>& entries);

/// Makes `folder` the current directory as long as it lives.
class CurrentFolder {
 public:
  explicit CurrentFolder(const std::filesystem::path& folder) : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder, failed_);
  }
  ~CurrentFolder() { std::filesystem::current_path(before_, failed_); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  std::filesystem::path before_;
  std::error_code failed_;
};

}  // namespace cli
