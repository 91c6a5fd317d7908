// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "core/status_channel.h"

namespace ts3d {

/// What a run may keep of its status lines: names from models make them as long and as many as they like.
class LineBudget {
 public:
  /// Whether there is still room for `line`. Lines that tell of faults have room of their own.
  bool Takes(const StatusLine& line) {
    constexpr size_t kMostBytes = size_t{8} << 20;
    size_t& kept = IsFault(line.notice) ? faults_ : usual_;
    const size_t size = line.text.size() + sizeof(std::string_view);
    if (size > kMostBytes - kept) return false;
    kept += size;
    return true;
  }

 private:
  size_t usual_ = 0, faults_ = 0;
};

}  // namespace ts3d
