// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "core/status_channel.h"

namespace ts3d {

/// What a job says. Each value of a notice is kept once, so that a model cannot fill the memory with them.
class SeenNotices {
 public:
  /// Takes what is sent through `channel`. Must outlive it.
  void Watch(StatusChannel& channel);
  void Clear() { seen_.clear(); }

  size_t Count(Notice notice) const;
  /// What `notice` was sent of, each once and in order.
  std::vector<std::string> ValuesOf(Notice notice) const;

 private:
  struct Seen {
    size_t count = 0;
    std::vector<const std::string*> order;
    std::unordered_set<std::string> values;
  };

  std::map<Notice, Seen> seen_;
};

}  // namespace ts3d
