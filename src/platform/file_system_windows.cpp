// SPDX-License-Identifier: MIT
#include "platform/file_system_windows.h"

#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

#include "platform/wide_paths_windows.h"

namespace platform::fs {
namespace {

struct CloseWindowsHandle {
  void operator()(void* handle) const { CloseHandle(handle); }
};
using HandlePtr = std::unique_ptr<void, CloseWindowsHandle>;

std::wstring Call(const path& path) { return CallPath(path.native()); }

/// Sets `failed` to why the last call has failed, or clears it. @return `succeeded`
bool Told(BOOL succeeded, std::error_code& failed) {
  failed = succeeded ? std::error_code() : LastErrorCode();
  return succeeded != FALSE;
}

[[noreturn]] void Fail(const char* what, const path& path, std::error_code failed) {
  throw filesystem_error(what, path, failed);
}

/// The result of `call`, or its error thrown.
template <typename Call>
auto Require(const char* what, const path& path, Call call) {
  std::error_code failed;
  auto result = call(failed);
  if (failed) Fail(what, path, failed);
  return result;
}

HandlePtr Open(const path& path) {
  // Folders are opened with this flag only.
  void* const handle =
      CreateFileW(Call(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  return HandlePtr(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

bool Identify(const path& path, BY_HANDLE_FILE_INFORMATION& info) {
  const HandlePtr file = Open(path);
  return file && GetFileInformationByHandle(file.get(), &info);
}

file_type TypeOf(DWORD attributes) {
  if (attributes & FILE_ATTRIBUTE_DIRECTORY) return file_type::directory;
  return attributes & FILE_ATTRIBUTE_DEVICE ? file_type::character : file_type::regular;
}

file_status NotThere(std::error_code& failed) {
  failed = LastErrorCode();
  const bool isMissing = failed == std::errc::no_such_file_or_directory;
  return file_status(isMissing ? file_type::not_found : file_type::none);
}

/// Attributes of a name in a folder. Other marks than those of links, as of files that lie on a server until somebody
/// reads them, are left out.
DWORD AttributesOf(const WIN32_FIND_DATAW& found) {
  const DWORD attributes = found.dwFileAttributes;
  const bool isMarked = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  return isMarked && !IsReparseTagNameSurrogate(found.dwReserved0)
             ? attributes & ~FILE_ATTRIBUTE_REPARSE_POINT
             : attributes;
}

/// The same of `path`; those of a link that leads there.
bool Look(const path& path, DWORD& attributes) {
  attributes = GetFileAttributesW(Call(path).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return true;
  WIN32_FIND_DATAW found;
  void* const search = FindFirstFileW(Call(path).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return true;
  FindClose(search);
  attributes = AttributesOf(found);
  return true;
}

bool IsLink(DWORD attributes) { return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }

/// Whether "NUL" or its like is meant, in whatever folder.
bool IsDevice(const path& path) {
  const std::wstring whole = AbsoluteWidePath(path.native());
  return whole.starts_with(LR"(\\.\)") && GetFileAttributesW(whole.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool IsSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

/// Length of the root of a path that begins with two separators, without the one behind it; 0 for others.
size_t LongRootLength(std::wstring_view path) {
  if (path.size() < 3 || !IsSeparator(path[0]) || !IsSeparator(path[1]) || IsSeparator(path[2])) return 0;
  size_t end = 2;
  int names = 2;  // of a share
  if (path.starts_with(LR"(\\?\UNC\)")) {
    end = 8;
  } else if (path.starts_with(LR"(\\?\)") || path.starts_with(LR"(\\.\)")) {
    end = 4;
    names = 1;
  }
  for (; names > 0 && end <= path.size(); --names) {
    end = std::min(path.find_first_of(LR"(\/)", end), path.size()) + (names > 1 ? 1 : 0);
  }
  return std::min(end, path.size());
}

/// A path that begins with a long root, in two parts, of which the library understands the second.
struct Parts {
  explicit Parts(const std::wstring& path)
      : root(path.substr(0, LongRootLength(path))), rest(path.substr(root.size())) {
    std::replace(root.begin(), root.end(), L'/', L'\\');
  }
  path With(const std::filesystem::path& other) const { return root + other.native(); }

  std::wstring root;
  std::filesystem::path rest;
};

}  // namespace

path::path(std::string_view text) : Base(WideText(text)) {}

path path::parent_path() const {
  const Parts parts(native());
  return parts.With(parts.rest.parent_path());
}

path path::lexically_normal() const {
  const Parts parts(native());
  return parts.With(parts.rest.lexically_normal());
}

path path::lexically_relative(const path& base) const {
  const Parts parts(native()), others(base.native());
  return parts.root == others.root ? parts.rest.lexically_relative(others.rest) : Base();
}

bool path::has_relative_path() const { return Parts(native()).rest.has_relative_path(); }

path& path::operator/=(const path& other) {
  if (LongRootLength(other.native()) > 0 || other.has_root_name()) return *this = other;
  const Parts parts(native());
  return *this = parts.With(parts.rest / static_cast<const Base&>(other));
}

std::string path::string() const { return Utf8Text(native()); }

std::string path::generic_string() const {
  std::string text = string();
  std::replace(text.begin(), text.end(), '\\', '/');
  return text;
}

bool directory_entry::is_directory(std::error_code& failed) const { return fs::is_directory(path_, failed); }

bool directory_entry::is_regular_file(std::error_code& failed) const {
  failed.clear();
  return IsLink(attributes_) ? fs::is_regular_file(path_, failed) : TypeOf(attributes_) == file_type::regular;
}

file_status directory_entry::symlink_status() const {
  return file_status(IsLink(attributes_) ? file_type::symlink : TypeOf(attributes_));
}

directory_iterator::directory_iterator(const path& folder)
    : directory_iterator(Require("the folder cannot be looked into", folder, [&](std::error_code& failed) {
        return directory_iterator(folder, failed);
      })) {}

directory_iterator::directory_iterator(const path& folder, std::error_code& failed) {
  const auto entries = std::make_shared<std::vector<directory_entry>>();
  WIN32_FIND_DATAW found;
  void* const search = FindFirstFileW(Call(folder / path(std::wstring(L"*"))).c_str(), &found);
  failed = search == INVALID_HANDLE_VALUE ? LastErrorCode() : std::error_code();
  if (failed) return;
  do {
    const std::wstring_view name = found.cFileName;
    if (name != L"." && name != L"..")
      entries->emplace_back(folder / path(std::wstring(name)), AttributesOf(found));
  } while (FindNextFileW(search, &found));
  if (GetLastError() != ERROR_NO_MORE_FILES) failed = LastErrorCode();
  FindClose(search);
  if (!failed && !entries->empty()) entries_ = entries;
}

directory_iterator& directory_iterator::operator++() {
  if (++at_ == entries_->size()) entries_.reset();
  return *this;
}

directory_iterator& directory_iterator::increment(std::error_code& failed) {
  failed.clear();
  return ++*this;
}

file_status symlink_status(const path& path, std::error_code& failed) {
  failed.clear();
  DWORD attributes = 0;
  if (IsDevice(path)) return file_status(file_type::character);
  if (!Look(path, attributes)) return NotThere(failed);
  return file_status(IsLink(attributes) ? file_type::symlink : TypeOf(attributes));
}

file_status status(const path& path, std::error_code& failed) {
  const file_status own = symlink_status(path, failed);
  if (own.type() != file_type::symlink) return own;
  BY_HANDLE_FILE_INFORMATION info;
  return Identify(path, info) ? file_status(TypeOf(info.dwFileAttributes)) : NotThere(failed);
}

file_status status(const path& path) {
  std::error_code ignored;
  return status(path, ignored);
}

file_status symlink_status(const path& path) {
  std::error_code ignored;
  return symlink_status(path, ignored);
}

bool exists(const path& path, std::error_code& failed) { return fs::exists(status(path, failed)); }
bool exists(const path& path) { return fs::exists(status(path)); }
bool is_directory(const path& path, std::error_code& failed) {
  return fs::is_directory(status(path, failed));
}
bool is_directory(const path& path) { return fs::is_directory(status(path)); }
bool is_regular_file(const path& path, std::error_code& failed) {
  return fs::is_regular_file(status(path, failed));
}
bool is_regular_file(const path& path) { return fs::is_regular_file(status(path)); }

uintmax_t file_size(const path& path, std::error_code& failed) {
  BY_HANDLE_FILE_INFORMATION info;
  if (!Told(Identify(path, info), failed)) return static_cast<uintmax_t>(-1);
  return (uintmax_t{info.nFileSizeHigh} << 32) | info.nFileSizeLow;
}

uintmax_t file_size(const path& path) {
  return Require("the file has no size", path,
                 [&](std::error_code& failed) { return file_size(path, failed); });
}

file_time_type last_write_time(const path& path, std::error_code& failed) {
  using namespace std::chrono;
  using Ticks = duration<int64_t, std::ratio<1, 10'000'000>>;
  constexpr seconds kFrom1601To1970{11'644'473'600};
  BY_HANDLE_FILE_INFORMATION info;
  if (!Told(Identify(path, info), failed)) return file_time_type::min();
  const uint64_t ticks =
      (uint64_t{info.ftLastWriteTime.dwHighDateTime} << 32) | info.ftLastWriteTime.dwLowDateTime;
  const nanoseconds sinceEpoch = Ticks(static_cast<int64_t>(ticks)) - kFrom1601To1970;
  return file_clock::from_sys(sys_time<nanoseconds>(sinceEpoch));
}

bool equivalent(const path& a, const path& b, std::error_code& failed) {
  BY_HANDLE_FILE_INFORMATION first, second;
  return Told(Identify(a, first) && Identify(b, second), failed) &&
         first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
         first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

path absolute(const path& path, std::error_code& failed) {
  failed.clear();
  const std::wstring& text = path.native();
  // The library, too, leaves these as they are.
  if (text.empty() || text.starts_with(LR"(\\?\)")) return path;
  std::wstring whole = AbsoluteWidePath(text);
  Told(!whole.empty(), failed);
  return whole;
}

path absolute(const path& path) {
  return Require("the path has no place", path,
                 [&](std::error_code& failed) { return absolute(path, failed); });
}

path canonical(const path& path, std::error_code& failed) {
  const HandlePtr file = Open(path);
  std::wstring whole(MAX_PATH, L'\0');
  DWORD length = 0;
  while (file) {
    length = GetFinalPathNameByHandleW(file.get(), whole.data(), static_cast<DWORD>(whole.size()), 0);
    const bool fits = length < whole.size();
    whole.resize(length);
    if (fits) break;
  }
  if (!Told(length > 0, failed)) return {};
  if (whole.starts_with(LR"(\\?\UNC\)")) return LR"(\\)" + whole.substr(8);
  if (whole.starts_with(LR"(\\?\)")) whole.erase(0, 4);
  return whole;
}

path weakly_canonical(const path& path, std::error_code& failed) {
  const fs::path whole = absolute(path, failed);
  fs::path known = whole, rest;
  while (!failed) {
    std::error_code missing;
    const fs::path real = canonical(known, missing);
    if (!missing) return rest.empty() ? real : real / rest;
    if (!known.has_relative_path()) break;
    rest = rest.empty() ? known.filename() : known.filename() / rest;
    known = known.parent_path();
  }
  return whole;
}

path weakly_canonical(const path& path) {
  return Require("the path has no place", path,
                 [&](std::error_code& failed) { return weakly_canonical(path, failed); });
}

path current_path() {
  std::wstring folder(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data());
    const bool fits = length < folder.size();
    folder.resize(length);
    if (fits) return folder;
  }
}

void current_path(const path& folder, std::error_code& failed) {
  Told(SetCurrentDirectoryW(Call(folder).c_str()), failed);
}

namespace {

bool CreateFolder(const path& path, std::error_code& failed) {
  if (Told(CreateDirectoryW(Call(path).c_str(), nullptr), failed)) return true;
  if (is_directory(path)) failed.clear();
  return false;
}

}  // namespace

bool create_directory(const path& path) {
  return Require("the folder cannot be made", path,
                 [&](std::error_code& failed) { return CreateFolder(path, failed); });
}

bool create_directories(const path& path, std::error_code& failed) {
  failed.clear();
  if (is_directory(path)) return false;
  const fs::path parent = path.has_filename() ? path.parent_path() : path.parent_path().parent_path();
  if (parent.has_relative_path() && parent != path) create_directories(parent, failed);
  return !failed && CreateFolder(path, failed);
}

bool create_directories(const path& path) {
  return Require("the folder cannot be made", path,
                 [&](std::error_code& failed) { return create_directories(path, failed); });
}

void create_symlink(const path& target, const path& link, std::error_code& failed) {
  constexpr DWORD kAllowUnprivileged = 2;  // SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE
  SetLastError(ERROR_NOT_SUPPORTED);
  // File systems without links may claim that there is one now.
  Told(CreateSymbolicLinkW(Call(link).c_str(), Call(target).c_str(), kAllowUnprivileged) &&
           GetFileAttributesW(Call(link).c_str()) != INVALID_FILE_ATTRIBUTES,
       failed);
}

void create_hard_link(const path& target, const path& link, std::error_code& failed) {
  const DWORD attributes = GetFileAttributesW(Call(target).c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) {
    failed = std::make_error_code(std::errc::permission_denied);
    return;
  }
  Told(CreateHardLinkW(Call(link).c_str(), Call(target).c_str(), nullptr), failed);
}

void copy_file(const path& from, const path& to) {
  constexpr BOOL kOnlyNewFiles = TRUE;
  if (!CopyFileW(Call(from).c_str(), Call(to).c_str(), kOnlyNewFiles))
    throw filesystem_error("the file cannot be copied", from, to, LastErrorCode());
  SetFileAttributesW(Call(to).c_str(), FILE_ATTRIBUTE_NORMAL);
}

bool remove(const path& path, std::error_code& failed) {
  failed.clear();
  const std::wstring call = Call(path);
  const DWORD attributes = GetFileAttributesW(call.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES)
    return NotThere(failed).type() == file_type::not_found && (failed.clear(), false);
  const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return Told(isFolder ? RemoveDirectoryW(call.c_str()) : DeleteFileW(call.c_str()), failed);
}

bool remove(const path& path) {
  return Require("the file cannot be removed", path,
                 [&](std::error_code& failed) { return remove(path, failed); });
}

void remove_all(const path& path, std::error_code& failed) {
  // What a link leads to stays.
  if (fs::is_directory(symlink_status(path, failed))) {
    directory_iterator entry(path, failed);
    for (; entry != directory_iterator(); ++entry) remove_all(entry->path(), failed);
  }
  remove(path, failed);
}

void resize_file(const path& path, uintmax_t size, std::error_code& failed) {
  void* const handle = CreateFileW(Call(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   nullptr, OPEN_EXISTING, 0, nullptr);
  if (!Told(handle != INVALID_HANDLE_VALUE, failed)) return;
  const HandlePtr file(handle);
  LARGE_INTEGER end;
  end.QuadPart = static_cast<int64_t>(size);
  Told(SetFilePointerEx(handle, end, nullptr, FILE_BEGIN) && SetEndOfFile(handle), failed);
}

}  // namespace platform::fs

namespace platform {

std::filesystem::path ForStream(const fs::path& path) { return CallPath(path.native()); }

}  // namespace platform
