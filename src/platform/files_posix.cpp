// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/files.h"

namespace platform {

std::string NativePath(std::string_view path) {
  std::string native(path);
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

bool PathFromUtf8(std::string_view utf8, std::string& native) {
  native = NativePath(utf8);
  return true;
}

bool IsReservedFileName(std::string_view) { return false; }

bool FileExists(std::string_view path) {
  struct stat info {};
  return stat(NativePath(path).c_str(), &info) == 0;
}

bool IsSameFile(std::string_view a, std::string_view b) {
  struct stat first {
  }, second{};
  return stat(NativePath(a).c_str(), &first) == 0 && stat(NativePath(b).c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

bool IsOnNetworkDrive(std::string_view) { return false; }

int64_t FileSize(std::string_view path) {
  struct stat info {};
  if (stat(NativePath(path).c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return -1;
  return info.st_size;
}

namespace {

/// Closes the file descriptor when it goes.
class Descriptor {
 public:
  explicit Descriptor(int file) : file_(file) {}
  ~Descriptor() {
    const int reason = errno;
    if (file_ >= 0) close(file_);
    errno = reason;
  }
  Descriptor(Descriptor&& other) noexcept : file_(std::exchange(other.file_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;

  int Get() const { return file_; }
  FilePtr ToStream(const char* mode) {
    FilePtr stream(fdopen(file_, mode));
    if (stream) file_ = -1;
    return stream;
  }

 private:
  int file_;
};

/// Opens a regular file; everything else is refused, before anything of it is touched and without waiting
/// for another end.
Descriptor OpenRegularFile(std::string_view path, int flags, struct stat& info) {
  Descriptor file(open(NativePath(path).c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666));
  if (file.Get() < 0 || fstat(file.Get(), &info) != 0) return Descriptor(-1);
  if (S_ISREG(info.st_mode)) return file;
  errno = S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
  return Descriptor(-1);
}

}  // namespace

FilePtr OpenFile(std::string_view path, const char* mode) {
  const std::string_view asked = mode;
  const bool writes = asked.starts_with('w'), changes = asked.find('+') != std::string_view::npos;
  const int access = changes ? O_RDWR : (writes ? O_WRONLY : O_RDONLY);
  struct stat info {};
  Descriptor file = OpenRegularFile(path, access | (writes ? O_CREAT : 0), info);
  if (file.Get() < 0 || (writes && ftruncate(file.Get(), 0) != 0)) return nullptr;
  return file.ToStream(mode);
}

FilePtr CreateNewFile(std::string_view path, const char* mode, Readers readers) {
  const mode_t access = readers == Readers::AsUsual ? 0666 : 0600;
  Descriptor file(open(NativePath(path).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, access));
  return file.Get() < 0 ? nullptr : file.ToStream(mode);
}

bool KeepPermissions(std::string_view model, std::string_view path) {
  struct stat old {
  }, own{};
  if (lstat(NativePath(model).c_str(), &old) != 0 || !S_ISREG(old.st_mode)) return true;
  const Descriptor file = OpenRegularFile(path, O_RDONLY | O_NOFOLLOW, own);
  if (file.Get() < 0) return false;
  mode_t mode = old.st_mode & 0777;
  const bool ownersAreKept = (own.st_uid == old.st_uid && own.st_gid == old.st_gid) ||
                             fchown(file.Get(), old.st_uid, old.st_gid) == 0;
  // What the old group was allowed is nothing for another one.
  if (!ownersAreKept && own.st_gid != old.st_gid && fchown(file.Get(), own.st_uid, old.st_gid) != 0) {
    mode = (mode & 0707) | (mode & 0070 & ((mode & 0007) << 3));
  }
  return fchmod(file.Get(), mode) == 0;
}

bool RemoveFile(std::string_view path) {
  // Without memory of its own: what is half-written has to go when there is none left, too.
  char native[PATH_MAX];
  if (path.size() >= sizeof native) return false;
  *std::replace_copy(path.begin(), path.end(), native, '\\', '/') = '\0';
  return unlink(native) == 0;
}

bool RenameFile(std::string_view from, std::string_view to) {
  return std::rename(NativePath(from).c_str(), NativePath(to).c_str()) == 0;
}

bool CopyWholeFile(std::string_view from, std::string_view to) {
  std::error_code failed;
  const std::filesystem::path target = NativePath(to);
  if (std::filesystem::copy_file(NativePath(from), target, std::filesystem::copy_options::overwrite_existing,
                                 failed)) {
    return true;
  }
  std::filesystem::remove(target, failed);
  return false;
}

bool MakeFolder(std::string_view path) {
  const std::string native = NativePath(path);
  struct stat info {};
  return mkdir(native.c_str(), 0777) == 0 || (stat(native.c_str(), &info) == 0 && S_ISDIR(info.st_mode));
}

bool IsDiskFull(int error) { return error == ENOSPC || error == EDQUOT; }

std::string MakeTemporaryFolder() {
  std::error_code failed;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(failed);
  if (failed) return {};
  std::string path = (std::filesystem::absolute(folder, failed) / "fbx2czp-XXXXXX").string();
  if (failed || !mkdtemp(path.data())) return {};
  return path;
}

FilePtr OpenTemporaryFile() { return FilePtr(std::tmpfile()); }

namespace {

uint32_t DosTime(std::time_t moment) {
  struct tm local {};
  if (!localtime_r(&moment, &local)) return 0;
  // The DOS format counts years from 1980 in seven bits.
  if (local.tm_year < 80 || local.tm_year > 207) return 0;
  const int date = ((local.tm_year - 80) << 9) | ((local.tm_mon + 1) << 5) | local.tm_mday;
  const int time = (local.tm_hour << 11) | (local.tm_min << 5) | (std::min(local.tm_sec, 59) / 2);
  return (static_cast<uint32_t>(date) << 16) | static_cast<uint32_t>(time);
}

}  // namespace

uint32_t DosWriteTime(std::string_view path) {
  struct stat info {};
  return stat(NativePath(path).c_str(), &info) == 0 ? DosTime(info.st_mtime) : 0;
}

uint32_t DosTimeNow() { return DosTime(std::time(nullptr)); }

namespace {

/// Maps a file for reading, off the boundaries of huge pages: where the system caches it in those, a look at
/// one place would take two megabytes.
void* MapSmallPages(int file, size_t size) {
  constexpr size_t kHugePage = 2 << 20;
  if (size < kHugePage) return mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  const size_t whole = (size + page - 1) / page * page;
  void* const room = mmap(nullptr, whole + page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (room == MAP_FAILED) return room;
  const bool isOnBoundary = reinterpret_cast<uintptr_t>(room) % kHugePage == 0;
  char* const place = static_cast<char*>(room) + (isOnBoundary ? page : 0);
  munmap(isOnBoundary ? room : place + whole, page);
  void* const data = mmap(place, size, PROT_READ, MAP_PRIVATE | MAP_FIXED, file, 0);
  if (data == MAP_FAILED) munmap(place, whole);
  return data;
}

}  // namespace

MappedFile::~MappedFile() {
  if (data_) munmap(data_, size_);
}

void MappedFile::ReleasePages() const {
  if (data_) madvise(data_, size_, MADV_DONTNEED);
}

bool MappedFile::Open(std::string_view path, std::string& error) {
  const auto fail = [&](const char* reason) {
    error = reason;
    return false;
  };
  struct stat info {};
  const Descriptor file = OpenRegularFile(path, O_RDONLY, info);
  if (file.Get() < 0 && S_ISDIR(info.st_mode)) return fail("it is a folder");
  if (file.Get() < 0 && info.st_mode != 0 && !S_ISREG(info.st_mode)) return fail("it is not a regular file");
  if (file.Get() < 0) return fail(std::strerror(errno));
  if (info.st_size == 0) return true;
  void* const data = MapSmallPages(file.Get(), static_cast<size_t>(info.st_size));
  if (data == MAP_FAILED) return fail(std::strerror(errno));
  data_ = data;
  size_ = static_cast<size_t>(info.st_size);
  return true;
}

}  // namespace platform
