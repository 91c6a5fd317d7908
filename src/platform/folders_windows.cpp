// SPDX-License-Identifier: MIT
#include "platform/folders.h"

#include <windows.h>

#include <cerrno>
#include <memory>
#include <new>
#include <string_view>
#include <system_error>

#include "platform/file_system.h"
#include "platform/wide_paths_windows.h"

namespace platform {
namespace {

using Kind = FolderEntry::Kind;

/// Links are the only marks that count: files that lie on a server until somebody reads them are files.
Kind KindOf(const WIN32_FIND_DATAW& found) {
  const DWORD attributes = found.dwFileAttributes;
  const bool isMarked = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (isMarked && IsReparseTagNameSurrogate(found.dwReserved0)) return Kind::Link;
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::Folder : Kind::File;
}

}  // namespace

std::optional<std::vector<FolderEntry>> ListFolder(const std::string& path, size_t most) {
  WIN32_FIND_DATAW found;
  void* const first = FindFirstFileW(CallPath(path + (path.ends_with('\\') ? "*" : "\\*")).c_str(), &found);
  if (first == INVALID_HANDLE_VALUE) {
    SetErrno();
    return std::nullopt;
  }
  const std::unique_ptr<void, BOOL(WINAPI*)(void*)> search(first, FindClose);
  std::vector<FolderEntry> entries;
  do {
    const std::wstring_view name = found.cFileName;
    if (name != L"." && name != L"..") entries.push_back({Utf8Text(name), KindOf(found)});
  } while (entries.size() < most && FindNextFileW(search.get(), &found));
  if (entries.size() < most && GetLastError() != ERROR_NO_MORE_FILES) {
    SetErrno();
    return std::nullopt;
  }
  return entries;
}

bool RemoveTree(const std::string& path) noexcept {
  try {
    std::error_code failed;
    fs::remove_all(path, failed);
    return !fs::exists(fs::symlink_status(path, failed));
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace platform
