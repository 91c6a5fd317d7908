// SPDX-License-Identifier: MIT
#include "platform/wide_paths_windows.h"

#include <windows.h>

#include <algorithm>
#include <cerrno>

#include "platform/path_reading.h"

namespace platform {
namespace {

thread_local const PathReading* reading = nullptr;  ///< of the call that this thread is in

/// Empty when `text` is not of that code page and `flags` ask for that.
std::wstring Decode(UINT codePage, DWORD flags, std::string_view text) {
  std::wstring wide(text.size(), L'\0');
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(codePage, flags, text.data(), size, wide.data(), size);
  wide.resize(static_cast<size_t>(std::max(length, 0)));
  return wide;
}

/// The code page that programs have which ask for none: names of old models are in one of these.
UINT UsualCodePage() {
  constexpr UINT kWesternEurope = 1252;
  DWORD codePage = 0;
  if (GetACP() != CP_UTF8) return CP_ACP;
  GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                 reinterpret_cast<wchar_t*>(&codePage), sizeof codePage / sizeof(wchar_t));
  return codePage == 0 || codePage == CP_UTF8 ? kWesternEurope : codePage;
}

/// One name of a path.
std::wstring DecodeName(std::string_view name) {
  if (reading && !reading->HostStem().empty() && name.substr(0, name.rfind('.')) == reading->HostStem())
    return Decode(CP_ACP, 0, name);
  std::wstring wide = Decode(CP_UTF8, MB_ERR_INVALID_CHARS, name);
  return wide.empty() ? Decode(UsualCodePage(), 0, name) : wide;
}

/// Length of the folder of `path` with its separator; letters of two bytes may end in that of a backslash.
size_t HostFolderLength(std::string_view path) {
  size_t length = 0;
  for (size_t i = 0; i < path.size(); ++i) {
    if (IsDBCSLeadByteEx(CP_ACP, static_cast<BYTE>(path[i]))) {
      ++i;
    } else if (path[i] == '\\' || path[i] == '/') {
      length = i + 1;
    }
  }
  return length;
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

struct KnownError {
  DWORD error;
  int number;
};
constexpr KnownError kKnownErrors[] = {{ERROR_FILE_NOT_FOUND, ENOENT},
                                       {ERROR_PATH_NOT_FOUND, ENOENT},
                                       {ERROR_INVALID_NAME, ENOENT},
                                       {ERROR_BAD_NETPATH, ENOENT},
                                       {ERROR_BAD_NET_NAME, ENOENT},
                                       {ERROR_INVALID_DRIVE, ENOENT},
                                       {ERROR_NOT_READY, ENOENT},
                                       {ERROR_ACCESS_DENIED, EACCES},
                                       {ERROR_SHARING_VIOLATION, EACCES},
                                       {ERROR_LOCK_VIOLATION, EACCES},
                                       {ERROR_NETWORK_ACCESS_DENIED, EACCES},
                                       {ERROR_WRITE_PROTECT, EROFS},
                                       {ERROR_FILE_EXISTS, EEXIST},
                                       {ERROR_ALREADY_EXISTS, EEXIST},
                                       {ERROR_DISK_FULL, ENOSPC},
                                       {ERROR_HANDLE_DISK_FULL, ENOSPC},
                                       {ERROR_DIR_NOT_EMPTY, ENOTEMPTY},
                                       {ERROR_DIRECTORY, ENOTDIR},
                                       {ERROR_FILENAME_EXCED_RANGE, ENAMETOOLONG},
                                       {ERROR_NOT_SAME_DEVICE, EXDEV},
                                       {ERROR_NOT_ENOUGH_MEMORY, ENOMEM},
                                       {ERROR_TOO_MANY_OPEN_FILES, EMFILE}};

}  // namespace

PathReading::PathReading(std::string_view hostPath) : outer_(reading) {
  folder_ = hostPath.substr(0, HostFolderLength(hostPath));
  stem_ = hostPath.substr(folder_.size());
  stem_.erase(std::min(stem_.rfind('.'), stem_.size()));
  reading = this;
}

PathReading::~PathReading() { reading = outer_; }

std::wstring WideText(std::string_view text) {
  if (IsAscii(text)) return {text.begin(), text.end()};
  std::wstring wide;
  if (reading && !reading->HostFolder().empty() && text.starts_with(reading->HostFolder())) {
    wide = Decode(CP_ACP, 0, reading->HostFolder());
    text.remove_prefix(reading->HostFolder().size());
  }
  while (!text.empty()) {
    const size_t name = std::min(text.find_first_of("\\/"), text.size());
    if (name > 0) wide += DecodeName(text.substr(0, name));
    if (name < text.size()) wide += static_cast<wchar_t>(text[name]);
    text.remove_prefix(std::min(name + 1, text.size()));
  }
  return wide;
}

std::string Utf8Text(std::wstring_view wide) {
  constexpr size_t kMostBytes = 3;  // of one unit
  std::string text(kMostBytes * wide.size(), '\0');
  text.resize(
      static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()),
                                              text.data(), static_cast<int>(text.size()), nullptr, nullptr)));
  return text;
}

std::wstring AbsoluteWidePath(const std::wstring& path) {
  std::wstring whole(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr);
    const bool fits = length < whole.size();
    whole.resize(length);
    if (fits) return whole;
  }
}

std::wstring CallPath(const std::wstring& path) {
  // A folder's path has to leave room for a name of 8.3 characters.
  constexpr size_t kLongest = MAX_PATH - 13;
  if (path.starts_with(LR"(\\?\)") || path.starts_with(LR"(\\.\)")) return path;
  std::wstring whole = AbsoluteWidePath(path);
  if (whole.size() < kLongest || whole.starts_with(LR"(\\.\)")) return path;
  return whole.starts_with(LR"(\\)") ? LR"(\\?\UNC)" + whole.substr(1) : LR"(\\?\)" + whole;
}

int SetErrno() {
  const DWORD error = GetLastError();
  const auto known = std::find_if(std::begin(kKnownErrors), std::end(kKnownErrors),
                                  [&](const KnownError& any) { return any.error == error; });
  return errno = known == std::end(kKnownErrors) ? EIO : known->number;
}

}  // namespace platform
