// SPDX-License-Identifier: MIT
#include "platform/folder_walk.h"

#include <vector>

namespace platform {
namespace {

struct Place {
  fs::path folder;
  int depth;
};

bool IsFolder(const fs::directory_entry& entry) {
  std::error_code unknown;
  return fs::is_directory(entry.symlink_status(unknown));
}

}  // namespace

void WalkFolder(const fs::path& folder, int deepest,
                const std::function<Walk(const fs::directory_entry&)>& visit,
                const std::function<void(const fs::path& folder, std::error_code reason)>& unread) {
  std::vector<Place> places{{folder, 0}};
  while (!places.empty()) {
    const Place place = std::move(places.back());
    places.pop_back();
    std::error_code failed;
    for (fs::directory_iterator entry(place.folder, failed); !failed && entry != fs::directory_iterator();
         entry.increment(failed)) {
      if (visit(*entry) == Walk::Stop) return;
      if (place.depth < deepest && IsFolder(*entry)) places.push_back({entry->path(), place.depth + 1});
    }
    if (failed) unread(place.folder, failed);
  }
}

}  // namespace platform
