// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"
#include "platform/folders.h"

namespace textures {

/// The files of a folder and of all folders below it, by name. Links to folders are not followed, and there
/// is an end to what is read.
class PictureIndex {
 public:
  explicit PictureIndex(platform::fs::path folder) : folder_(std::move(folder)) {}

  const platform::fs::path& Folder() const { return folder_; }
  /// Whether Find knows all files; false as well when the folder cannot be read.
  bool IsComplete() const { return isComplete_; }

  /// The regular file that has the name of `path` (with slashes) in any letter case; empty when there is
  /// none. Of several that one whose folders have most names in common with those of `path`, from the end.
  platform::fs::path Find(std::string_view path);

 private:
  struct Subfolder {
    platform::fs::path path;
    int depth = 0;
  };

  void Read();
  void Take(const platform::FolderEntry& entry, const Subfolder& folder, std::vector<Subfolder>& pending);

  platform::fs::path folder_;
  bool isRead_ = false, isComplete_ = true;
  std::map<std::string, std::vector<platform::fs::path>> files_;  ///< by name in lower case
};

}  // namespace textures
