// SPDX-License-Identifier: MIT
#pragma once

#include <minizip/unzip.h>

#include <memory>
#include <string_view>

namespace actor {

/// An archive in memory, open for minizip. `bytes` must outlive it.
class MemoryArchive {
 public:
  explicit MemoryArchive(std::string_view bytes);

  /// Null when the bytes are no archive.
  unzFile Handle() const { return handle_.get(); }

 private:
  struct Position {
    std::string_view bytes;
    ZPOS64_T at = 0;
  };
  struct Close {
    void operator()(void* archive) const { unzClose(archive); }
  };

  static zlib_filefunc64_def Functions(Position& position);

  std::unique_ptr<Position> position_;
  std::unique_ptr<void, Close> handle_;
};

}  // namespace actor
