// SPDX-License-Identifier: MIT
#include "textures/picture_index.h"

#include <algorithm>

#include "core/names.h"

namespace textures {
namespace fs = std::filesystem;
namespace {

constexpr size_t kMostEntries = 200'000;
constexpr int kDeepest = 32;

/// How much of the ends of two paths is the same: two for each
/// name in any letter case, three for one of the same letters.
int CommonEnd(const fs::path& a, const fs::path& b) {
  int common = 0;
  for (auto inA = a.end(), inB = b.end(); inA != a.begin() && inB != b.begin();) {
    const std::string nameA = (--inA)->string(), nameB = (--inB)->string();
    if (!ts3d::EqualsIgnoreCase(nameA, nameB)) break;
    common += nameA == nameB ? 3 : 2;
  }
  return common;
}

}  // namespace

void PictureIndex::Read() {
  isRead_ = true;
  size_t count = 0;
  std::error_code failed;
  constexpr auto kOptions = fs::directory_options::skip_permission_denied;
  fs::recursive_directory_iterator entry(folder_, kOptions, failed), end;
  for (; !failed && entry != end; entry.increment(failed)) {
    if (++count > kMostEntries) {
      isComplete_ = false;
      break;
    }
    std::error_code unknown;
    if (entry->is_directory(unknown)) {
      if (entry.depth() >= kDeepest) entry.disable_recursion_pending();
    } else {
      files_[ts3d::LowerCase(entry->path().filename().string())].push_back(entry->path());
    }
  }
  if (failed) isComplete_ = false;
  for (auto& [name, paths] : files_) std::sort(paths.begin(), paths.end());
}

fs::path PictureIndex::Find(std::string_view path) {
  if (!isRead_) Read();
  const std::string name(path.substr(path.rfind('/') + 1));
  const auto found = files_.find(ts3d::LowerCase(name));
  if (name.empty() || found == files_.end()) return {};
  fs::path best;
  int common = 0;
  for (const fs::path& candidate : found->second) {
    const int here = CommonEnd(candidate, path);
    std::error_code failed;
    if (here <= common || !fs::is_regular_file(candidate, failed)) continue;
    best = candidate;
    common = here;
  }
  return best;
}

}  // namespace textures
