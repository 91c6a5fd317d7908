// SPDX-License-Identifier: MIT
#include "rig_check/status_lines.h"

namespace ts3d {

void StatusLines::Attach(ConversionJob& job) {
  job.callbackContext = this;
  job.statusCallback = Take;
}

void StatusLines::Clear() {
  order_.clear();
  counts_.clear();
}

size_t StatusLines::Count(const std::string& line) const {
  const auto found = counts_.find(line);
  return found == counts_.end() ? 0 : found->second;
}

std::vector<std::string> StatusLines::After(std::string_view prefix) const {
  std::vector<std::string> found;
  for (const std::string* line : order_) {
    if (line->starts_with(prefix)) found.push_back(line->substr(prefix.size()));
  }
  return found;
}

void StatusLines::Take(void* lines, const char* text) {
  auto& self = *static_cast<StatusLines*>(lines);
  const auto [entry, isNew] = self.counts_.try_emplace(text, 0);
  if (isNew) self.order_.push_back(&entry->first);
  ++entry->second;
}

}  // namespace ts3d
