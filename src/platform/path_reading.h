// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

/// How this thread reads the paths that the functions of this folder are given, as long as it lives. Without one they
/// are UTF-8. The classic functions are called with paths in the code page of the host on Windows, and join them with
/// the names that models have, which are mostly UTF-8. Other systems take paths as the bytes they are.
class PathReading {
 public:
  /// Reads all paths as UTF-8, whatever the caller of this thread has set.
  PathReading() : PathReading(std::string_view()) {}
  /// Reads the folder and the name of `hostPath`, wherever they come, in the host's code page.
  explicit PathReading(std::string_view hostPath);
  ~PathReading();
  PathReading(const PathReading&) = delete;
  PathReading& operator=(const PathReading&) = delete;

  const std::string& HostFolder() const { return folder_; }
  const std::string& HostStem() const { return stem_; }

 private:
  std::string folder_;  ///< with its separator
  std::string stem_;
  [[maybe_unused]] const PathReading* outer_ = nullptr;  ///< what counted before
};

#ifndef _WIN32
inline PathReading::PathReading(std::string_view) {}
inline PathReading::~PathReading() {}
#endif

}  // namespace platform
