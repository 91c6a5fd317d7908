// SPDX-License-Identifier: MIT
#include "rig_check/seen_notices.h"

namespace ts3d {

void SeenNotices::Watch(StatusChannel& channel) {
  channel.onNotice = [this](Notice notice, std::string_view value) {
    Seen& seen = seen_[notice];
    ++seen.count;
    const auto [entry, isNew] = seen.values.emplace(value);
    if (isNew) seen.order.push_back(&*entry);
  };
}

size_t SeenNotices::Count(Notice notice) const {
  const auto found = seen_.find(notice);
  return found == seen_.end() ? 0 : found->second.count;
}

std::vector<std::string> SeenNotices::ValuesOf(Notice notice) const {
  std::vector<std::string> values;
  const auto found = seen_.find(notice);
  if (found == seen_.end()) return values;
  for (const std::string* value : found->second.order) values.push_back(*value);
  return values;
}

}  // namespace ts3d
