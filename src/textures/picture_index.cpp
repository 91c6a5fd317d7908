// SPDX-License-Identifier: MIT
#include "textures/picture_index.h"

#include <algorithm>
#include <cerrno>

#include "core/names.h"

namespace textures {
namespace fs = platform::fs;
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
  size_t left = kMostEntries;
  std::vector<Subfolder> pending{{folder_, 0}};
  while (!pending.empty()) {
    const Subfolder folder = std::move(pending.back());
    pending.pop_back();
    const auto entries = platform::ListFolder(folder.path.string(), left + 1);
    if (!entries) {
      isComplete_ &= errno == EACCES;
      continue;
    }
    for (const platform::FolderEntry& entry : *entries) Take(entry, folder, pending);
    if (entries->size() > left) {
      isComplete_ = false;
      break;
    }
    left -= entries->size();
  }
  for (auto& [name, paths] : files_) std::sort(paths.begin(), paths.end());
}

void PictureIndex::Take(const platform::FolderEntry& entry, const Subfolder& folder,
                        std::vector<Subfolder>& pending) {
  using Kind = platform::FolderEntry::Kind;
  fs::path path = folder.path / entry.name;
  std::error_code unknown;
  if (entry.kind == Kind::Folder) {
    if (folder.depth < kDeepest) pending.push_back({std::move(path), folder.depth + 1});
  } else if (entry.kind != Kind::Link || !fs::is_directory(path, unknown)) {
    files_[ts3d::LowerCase(entry.name)].push_back(std::move(path));
  }
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
