// SPDX-License-Identifier: MIT
#include "platform/folders.h"

#include <dirent.h>
#include <ftw.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>

namespace platform {
namespace {

using Kind = FolderEntry::Kind;

Kind KindOf(const std::string& path) {
  struct stat info {};
  if (lstat(path.c_str(), &info) != 0) return Kind::Other;
  return S_ISREG(info.st_mode)   ? Kind::File
         : S_ISDIR(info.st_mode) ? Kind::Folder
         : S_ISLNK(info.st_mode) ? Kind::Link
                                 : Kind::Other;
}

Kind KindOf(const std::string& folder, const dirent& entry) {
  switch (entry.d_type) {
    case DT_REG:
      return Kind::File;
    case DT_DIR:
      return Kind::Folder;
    case DT_LNK:
      return Kind::Link;
    case DT_UNKNOWN:
      return KindOf(folder + "/" + entry.d_name);
    default:
      return Kind::Other;
  }
}

}  // namespace

std::optional<std::vector<FolderEntry>> ListFolder(const std::string& path, size_t most) {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), closedir);
  if (!folder) return std::nullopt;
  std::vector<FolderEntry> entries;
  errno = 0;
  while (const dirent* entry = entries.size() < most ? readdir(folder.get()) : nullptr) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") entries.push_back({entry->d_name, KindOf(path, *entry)});
    errno = 0;
  }
  return errno == 0 ? std::optional(std::move(entries)) : std::nullopt;
}

bool RemoveTree(const std::string& path) noexcept {
  constexpr int kMostOpen = 16;
  const auto remove = [](const char* part, const struct stat*, int, FTW*) { return std::remove(part); };
  return nftw(path.c_str(), remove, kMostOpen, FTW_DEPTH | FTW_PHYS) == 0 || errno == ENOENT;
}

}  // namespace platform
