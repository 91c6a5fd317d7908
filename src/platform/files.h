// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

/// The few operating-system calls of the converter. Paths come with backslashes; each backslash becomes the
/// system's own separator here and nowhere else.
namespace platform {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, CloseFile>;

/// Whether files that are opened as text get other line ends than they are given.
#ifdef _WIN32
inline constexpr bool kTextModeChangesBytes = true;
#else
inline constexpr bool kTextModeChangesBytes = false;
#endif

/// `path` as the system's calls take it.
std::string NativePath(std::string_view path);

/// Sets `native` to the UTF-8 path `utf8`, with slashes of either kind, as the system's calls take it; false
/// when they cannot.
bool PathFromUtf8(std::string_view utf8, std::string& native);

/// Whether the system takes the plain file name `name` for something else than a file of that name: for a
/// device, a drive, a part of another file or an error.
bool IsReservedFileName(std::string_view name);

/// Whether `name` can only name a file inside the folder that it is opened in: not empty, not "." or "..", no
/// separator, no zero byte and no name that the system keeps for itself.
bool IsPlainFileName(std::string_view name);
/// The same for a name that a model brings, whatever system it was made on: no drive either, nor a scheme.
bool IsPlainNameOfModel(std::string_view name);

/// Whether `name` can name a member of a package: as IsPlainFileName, of whatever system.
bool IsMemberName(std::string_view name);

/// Whether a file-status query on `path` succeeds. True for folders as well.
bool FileExists(std::string_view path);

/// Whether both paths lead to one file that exists.
bool IsSameFile(std::string_view a, std::string_view b);

/// Whether `path` begins with the letter of a drive that stands for a folder of another computer.
bool IsOnNetworkDrive(std::string_view path);

/// Size in bytes of the regular file `path`, or -1.
int64_t FileSize(std::string_view path);

/// Opens the regular file `path` like fopen, or makes it where `mode` does; null with `errno` when that
/// fails. Pipes, devices and folders are not opened, and nothing is waited for.
FilePtr OpenFile(std::string_view path, const char* mode);

/// Who may read a new file: those whom the user's settings let, or nobody else for now.
enum class Readers { AsUsual, OnlyOwner };

/// Makes the file `path` and opens it for writing, "w" or "wb" like fopen. Null with `errno` when that fails,
/// and when anything of that name is there, even a link that leads nowhere.
FilePtr CreateNewFile(std::string_view path, const char* mode, Readers readers);

/// Gives the file `path` the permissions of the regular file `model`, where there is one; false with `errno`
/// when they cannot be set. Links are not followed.
bool KeepPermissions(std::string_view model, std::string_view path);

/// Whether `error`, a value of `errno`, means that the disk, or this user's share of it, is full.
bool IsDiskFull(int error);

/// Deletes the file `path`; false when it could not be deleted.
bool RemoveFile(std::string_view path);

/// Renames `from` to `to`, in place of any file of that name, in one step.
bool RenameFile(std::string_view from, std::string_view to);

/// Copies the regular file `from` to `to`, over any file of
/// that name; false, with nothing left, when that fails.
bool CopyWholeFile(std::string_view from, std::string_view to);

/// Creates the folder `path` unless it exists; false when there is none afterwards.
bool MakeFolder(std::string_view path);

/// Makes a new, empty folder of this user's own among the system's temporary files and returns its path.
/// Empty when that fails.
std::string MakeTemporaryFolder();

/// Opens a new temporary file without a name, which goes when it is closed; null when that fails.
FilePtr OpenTemporaryFile();

/// Last-write time of `path` in local time as a DOS date and
/// time word (date in the high half); 0 when unknown.
uint32_t DosWriteTime(std::string_view path);

/// The present moment in the same form.
uint32_t DosTimeNow();

/// A whole file, mapped read-only. The bytes stay valid as long as the object lives.
class MappedFile {
 public:
  MappedFile() = default;
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  /// Maps the regular file `path`. On failure returns false and sets `error` to the system's reason.
  [[nodiscard]] bool Open(std::string_view path, std::string& error);

  std::string_view Bytes() const { return {static_cast<const char*>(data_), size_}; }
  /// Gives the memory of what was read back to the system; it is read again where it is needed again.
  void ReleasePages() const;

 private:
  void* data_ = nullptr;
  size_t size_ = 0;
};

}  // namespace platform
