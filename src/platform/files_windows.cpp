// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <limits>

#include "platform/files.h"
#include "platform/wide_paths_windows.h"

namespace platform {
namespace {

struct CloseWindowsHandle {
  void operator()(void* handle) const { CloseHandle(handle); }
};
using HandlePtr = std::unique_ptr<void, CloseWindowsHandle>;

DWORD Attributes(std::string_view path) { return GetFileAttributesW(CallPath(path).c_str()); }

bool IsFolder(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// Opens an existing file, others may read, write and delete it meanwhile; null when that fails.
HandlePtr OpenHandle(std::string_view path, DWORD access, DWORD flags) {
  void* handle =
      CreateFileW(CallPath(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, flags, nullptr);
  return HandlePtr(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

bool Identify(std::string_view path, BY_HANDLE_FILE_INFORMATION& info) {
  // Folders are opened with this flag only.
  const HandlePtr file = OpenHandle(path, 0, FILE_FLAG_BACKUP_SEMANTICS);
  return file && GetFileInformationByHandle(file.get(), &info);
}

std::string LastError() { return LastErrorCode().message(); }

}  // namespace

std::string NativePath(std::string_view path) { return std::string(path); }

bool PathFromUtf8(std::string_view utf8, std::string& native) {
  const int size = static_cast<int>(utf8.size());
  if (MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), size, nullptr, 0) == 0) return false;
  native = utf8;
  std::replace(native.begin(), native.end(), '/', '\\');
  return true;
}

bool IsReservedFileName(std::string_view name) {
  // A drive, a second stream of a file, or what is never part of a name.
  if (name.find_first_of(":\"<>|?*") != std::string_view::npos) return true;
  if (std::any_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; })) {
    return true;
  }
  std::string base(name.substr(0, name.find('.')));
  base.erase(base.find_last_not_of(' ') + 1);
  std::transform(base.begin(), base.end(), base.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  if (base.size() == 4 && (base.starts_with("COM") || base.starts_with("LPT"))) {
    return base[3] >= '0' && base[3] <= '9';
  }
  return base == "CON" || base == "PRN" || base == "AUX" || base == "NUL" || base == "CONIN$" ||
         base == "CONOUT$";
}

bool FileExists(std::string_view path) { return Attributes(path) != INVALID_FILE_ATTRIBUTES; }

bool IsSameFile(std::string_view a, std::string_view b) {
  BY_HANDLE_FILE_INFORMATION first, second;
  return Identify(a, first) && Identify(b, second) &&
         first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
         first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

bool IsOnNetworkDrive(std::string_view path) {
  if (path.size() < 2 || path[1] != ':') return false;
  const wchar_t root[] = {static_cast<wchar_t>(path[0]), L':', L'\\', L'\0'};
  return GetDriveTypeW(root) == DRIVE_REMOTE;
}

int64_t FileSize(std::string_view path) {
  WIN32_FILE_ATTRIBUTE_DATA info;
  if (!GetFileAttributesExW(CallPath(path).c_str(), GetFileExInfoStandard, &info)) return -1;
  if (IsFolder(info.dwFileAttributes)) return -1;
  return (static_cast<int64_t>(info.nFileSizeHigh) << 32) | info.nFileSizeLow;
}

FilePtr OpenFile(std::string_view path, const char* mode) {
  FilePtr file(_wfopen(CallPath(path).c_str(), WideText(mode).c_str()));
  if (!file) return nullptr;
  void* const handle = reinterpret_cast<void*>(_get_osfhandle(_fileno(file.get())));
  return GetFileType(handle) == FILE_TYPE_DISK ? std::move(file) : nullptr;
}

FilePtr CreateNewFile(std::string_view path, const char* mode, Readers) {
  const int translation = std::string_view(mode).ends_with('b') ? _O_BINARY : _O_TEXT;
  const int file = _wopen(CallPath(path).c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_NOINHERIT | translation,
                          _S_IREAD | _S_IWRITE);
  return FilePtr(file < 0 ? nullptr : _fdopen(file, mode));
}

/// New files have the access list of their folder; that of a single file is not copied.
bool KeepPermissions(std::string_view, std::string_view) { return true; }

bool RemoveFile(std::string_view path) { return DeleteFileW(CallPath(path).c_str()) || (SetErrno(), false); }

bool RenameFile(std::string_view from, std::string_view to) {
  return MoveFileExW(CallPath(from).c_str(), CallPath(to).c_str(), MOVEFILE_REPLACE_EXISTING) ||
         (SetErrno(), false);
}

bool CopyWholeFile(std::string_view from, std::string_view to) {
  constexpr BOOL kOnlyNewFiles = FALSE;
  if (CopyFileW(CallPath(from).c_str(), CallPath(to).c_str(), kOnlyNewFiles)) {
    // That of a read-only file is to be written to nevertheless.
    SetFileAttributesW(CallPath(to).c_str(), FILE_ATTRIBUTE_NORMAL);
    return true;
  }
  const int reason = SetErrno();
  RemoveFile(to);
  errno = reason;
  return false;
}

bool MakeFolder(std::string_view path) {
  return CreateDirectoryW(CallPath(path).c_str(), nullptr) || IsFolder(Attributes(path));
}

bool IsDiskFull(int error) { return error == ENOSPC; }

namespace {

/// Calls `make` with names among the system's temporary files until one was free. @return it, or nothing
std::wstring MakeTemporary(const std::function<bool(const std::wstring& path)>& make) {
  constexpr int kTries = 100;
  wchar_t parent[MAX_PATH + 1];
  const DWORD length = GetTempPathW(MAX_PATH + 1, parent);
  if (length == 0 || length > MAX_PATH) return {};
  const std::wstring start = std::wstring(parent, length) + L"fbx2czp-" +
                             std::to_wstring(GetCurrentProcessId()) + L"-" +
                             std::to_wstring(GetTickCount64()) + L"-";
  for (int i = 0; i < kTries; ++i) {
    std::wstring path = start + std::to_wstring(i);
    if (make(CallPath(path))) return path;
  }
  return {};
}

}  // namespace

std::string MakeTemporaryFolder() {
  return Utf8Text(MakeTemporary([](const std::wstring& path) {
    return CreateDirectoryW(path.c_str(), nullptr) || (SetErrno(), false);
  }));
}

FilePtr OpenTemporaryFile() {
  FilePtr file;
  MakeTemporary([&](const std::wstring& path) {
    constexpr int kFlags = _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT | _O_TEMPORARY;
    const int number = _wopen(path.c_str(), kFlags, _S_IREAD | _S_IWRITE);
    file.reset(number < 0 ? nullptr : _fdopen(number, "w+b"));
    return file != nullptr;
  });
  return file;
}

namespace {

uint32_t DosTime(const FILETIME& moment) {
  FILETIME local;
  WORD date = 0, time = 0;
  if (!FileTimeToLocalFileTime(&moment, &local) || !FileTimeToDosDateTime(&local, &date, &time)) return 0;
  return (static_cast<uint32_t>(date) << 16) | time;
}

}  // namespace

uint32_t DosWriteTime(std::string_view path) {
  WIN32_FIND_DATAW found;
  void* search = FindFirstFileW(CallPath(path).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return 0;
  FindClose(search);
  return DosTime(found.ftLastWriteTime);
}

uint32_t DosTimeNow() {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  return DosTime(now);
}

MappedFile::~MappedFile() {
  if (data_) UnmapViewOfFile(data_);
}

void MappedFile::ReleasePages() const {
  // Unlocking pages that are not locked takes them out of the working set.
  if (data_) VirtualUnlock(data_, size_);
}

bool MappedFile::Open(std::string_view path, std::string& error) {
  const auto fail = [&](const std::string& reason) {
    error = reason;
    return false;
  };
  if (IsFolder(Attributes(path))) return fail("it is a folder");
  const HandlePtr file = OpenHandle(path, GENERIC_READ, FILE_ATTRIBUTE_NORMAL);
  if (!file) return fail(LastError());
  LARGE_INTEGER size;
  if (GetFileType(file.get()) != FILE_TYPE_DISK) return fail("it is not a regular file");
  if (!GetFileSizeEx(file.get(), &size)) return fail(LastError());
  if (size.QuadPart == 0) return true;
  if (static_cast<uint64_t>(size.QuadPart) > std::numeric_limits<size_t>::max()) {
    return fail("it is too large for a 32-bit program");
  }
  const HandlePtr mapping(CreateFileMappingW(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
  if (!mapping) return fail(LastError());
  // The view keeps file and mapping open.
  data_ = MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0);
  if (!data_) return fail(LastError());
  size_ = static_cast<size_t>(size.QuadPart);
  return true;
}

}  // namespace platform
