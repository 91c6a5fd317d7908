// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace cli {

/// Whether the name of a file or folder in `path` holds a backslash: the converter would split it there.
bool HasBackslashInName(const std::filesystem::path& path);

/// `path` as the converter takes it: it splits paths at the backslash.
std::string ConverterPath(const std::filesystem::path& path);

/// Entries as the converter takes a list: separated by "|".
std::string JoinList(const std::vector<std::string>& entries);

/// `path` with `extension`, given without its dot, in place of its own if it has one.
std::filesystem::path WithExtension(const std::filesystem::path& path, const char* extension);

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

/// A new, empty temporary folder that goes away with this object.
class TemporaryFolder {
 public:
  /// @throws std::filesystem::filesystem_error when it cannot be made
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace cli
