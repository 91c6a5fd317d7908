// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace ts3d {

/// Small work files that have no place in a folder. File systems take ever longer to make and delete
/// thousands of files, so the first few megabytes stay in memory and the others share one nameless temporary
/// file.
class HeldFiles {
 public:
  /// Holds the file `name`, in place of any of that name; false, with none held, when there is no room.
  bool Put(std::string_view name, std::string_view bytes);
  /// Holds what is in the temporary file `content` in the same way.
  bool Adopt(std::string_view name, platform::FilePtr content);
  bool Contains(std::string_view name) const { return files_.contains(name); }
  /// The bytes of the file `name`; none when it is not held or cannot be read.
  std::optional<std::string> Read(std::string_view name) const;
  /// False when no such file is held.
  bool Erase(std::string_view name);
  std::vector<std::string> Names() const;
  void Clear() { *this = {}; }

 private:
  struct File {
    std::string bytes;
    std::shared_ptr<std::FILE> spool;  ///< that holds the bytes; null: they are in `bytes`
    long spooledAt = 0;
    size_t size = 0;
  };

  bool Spool(File& file, std::string_view bytes);

  std::map<std::string, File, std::less<>> files_;
  size_t heldBytes_ = 0;              ///< of all that were ever held in memory
  std::shared_ptr<std::FILE> spool_;  ///< of all that Put has found no room for
};

}  // namespace ts3d
