// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/files.h"

namespace platform {

/// What a replacement does where the path of the file is a symbolic link.
enum class Links {
  Replace,  ///< the link gives way to the new file: for files that are made, in whatever folder
  Follow    ///< the link stays and what it leads to is replaced: for files that are changed
};

/// A new file that takes the place of another one, or of none, in one step. It is written in the same folder
/// under a name that nobody can guess and that was free, so that no planted link is followed and no other
/// file touched, and it goes when it does not take the place. The permissions of a replaced file are kept.
/// Where the folder takes no new files, a file that may be written to is written over, and gets its old
/// content back when that fails.
class Replacement {
 public:
  explicit Replacement(std::string_view target, Links links = Links::Replace);
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  /// Makes the new file and opens it, "w" or "wb" like fopen; null with `errno` when that fails. To be called
  /// once, before the others.
  [[nodiscard]] FilePtr Create(const char* mode);

  /// The file that is replaced, behind all links that are followed.
  const std::string& Target() const { return target_; }
  /// The new file, which may also be opened by this path once it is there.
  const std::string& Path() const { return path_; }

  /// Puts the new file, closed and complete, into its place. On failure returns false with `errno`, and the
  /// old file is there as it was.
  [[nodiscard]] bool TakePlace();

 private:
  bool WriteOver() const;

  std::string target_, path_;
  std::string folder_;  ///< of our own, with the new file, when the target's takes none; else empty
  bool exists_ = false;
};

/// Moves the file `from` to `to` like a replacement that has the content of `from`. False, with `errno` and
/// `from` still there, when that fails.
[[nodiscard]] bool MoveIntoPlace(const std::string& from, const std::string& to);

}  // namespace platform
