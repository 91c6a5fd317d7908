// SPDX-License-Identifier: MIT
#include "platform/folders.h"

#include <windows.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <new>
#include <string_view>
#include <system_error>

namespace platform {
namespace {

using Kind = FolderEntry::Kind;

Kind KindOf(DWORD attributes) {
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return Kind::Link;
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::Folder : Kind::File;
}

}  // namespace

std::optional<std::vector<FolderEntry>> ListFolder(const std::string& path, size_t most) {
  WIN32_FIND_DATAA entry;
  void* const first = FindFirstFileA((path + "\\*").c_str(), &entry);
  if (first == INVALID_HANDLE_VALUE) {
    errno = GetLastError() == ERROR_ACCESS_DENIED ? EACCES : ENOENT;
    return std::nullopt;
  }
  const std::unique_ptr<void, BOOL(WINAPI*)(void*)> search(first, FindClose);
  std::vector<FolderEntry> entries;
  do {
    const std::string_view name = entry.cFileName;
    if (name != "." && name != "..") entries.push_back({entry.cFileName, KindOf(entry.dwFileAttributes)});
  } while (entries.size() < most && FindNextFileA(search.get(), &entry));
  return entries;
}

bool RemoveTree(const std::string& path) noexcept {
  std::error_code failed;
  try {
    std::filesystem::remove_all(path, failed);
    return !failed;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace platform
