// SPDX-License-Identifier: MIT
#include "platform/replacement.h"

#include <cerrno>
#include <random>
#include <vector>

#include "platform/file_system.h"
#include "platform/folders.h"
#include "platform/unfinished.h"

namespace platform {
namespace fs = platform::fs;
namespace {

std::string RandomName() {
  constexpr int kNumbers = 4;  // of 32 bits each
  std::random_device random;
  std::string name = ".unfinished-";
  for (int i = 0; i < kNumbers; ++i) {
    constexpr char kDigits[] = "0123456789abcdef";
    for (uint32_t bits = random(), digit = 0; digit < 8; ++digit, bits >>= 4) name += kDigits[bits & 15];
  }
  return name;
}

/// The folder of `path`, with its separator.
std::string FolderOf(const std::string& path) {
  constexpr const char* kSeparators = fs::path::preferred_separator == '\\' ? "\\/" : "/";
  return path.substr(0, path.find_last_of(kSeparators) + 1);
}

/// `path` without the links that its last part may lead through.
std::string Resolve(const std::string& path) {
  std::error_code failed;
  if (fs::symlink_status(path, failed).type() != fs::file_type::symlink) return path;
  const fs::path real = fs::canonical(path, failed);
  return failed ? path : real.string();
}

/// Writes the content of `from` over that of `to`, which stays the file that it is.
bool WriteOverFile(const std::string& from, const std::string& to) {
  std::error_code failed;
  const FilePtr source = OpenFile(from, "rb");
  FilePtr file = source ? OpenFile(to, "r+b") : nullptr;
  if (!file) return false;
  std::vector<char> buffer(1 << 16);
  uintmax_t size = 0;
  while (const size_t read = std::fread(buffer.data(), 1, buffer.size(), source.get())) {
    if (std::fwrite(buffer.data(), 1, read, file.get()) != read) return false;
    size += read;
  }
  if (std::ferror(source.get()) || std::fclose(file.release()) != 0) return false;
  fs::resize_file(to, size, failed);
  return !failed;
}

}  // namespace

Replacement::Replacement(std::string_view target, Links links)
    : target_(links == Links::Follow ? Resolve(NativePath(target)) : NativePath(target)),
      path_(FolderOf(target_) + RandomName()) {}

Replacement::~Replacement() {
  if (exists_) {
    RemoveFile(path_);
    ForgetUnfinished(path_);
  }
  if (folder_.empty()) return;
  RemoveTree(folder_);
  ForgetUnfinished(folder_);
}

FilePtr Replacement::Create(const char* mode) {
  std::error_code unknown;
  const bool replaces = fs::is_regular_file(fs::symlink_status(target_, unknown));
  FilePtr file;
  MakeUnfinished([&] {
    file = CreateNewFile(path_, mode, replaces ? Readers::OnlyOwner : Readers::AsUsual);
    exists_ = file != nullptr;
    return file ? path_ : std::string();
  });
  const bool takesNoFiles = errno == EACCES || errno == EPERM || errno == EROFS;
  if (!file && takesNoFiles && replaces && OpenFile(target_, "r+b")) {
    folder_ = MakeUnfinished(MakeTemporaryFolder);
    if (folder_.empty()) return nullptr;
    path_ = folder_ + "/new";
    file = CreateNewFile(path_, mode, Readers::OnlyOwner);
  }
  exists_ = file != nullptr;
  return file;
}

bool Replacement::TakePlace() {
  if (!folder_.empty()) return WriteOver();
  if (!KeepPermissions(target_, path_) || !RenameFile(path_, target_)) return false;
  exists_ = false;
  ForgetUnfinished(path_);
  return true;
}

bool Replacement::WriteOver() const {
  const std::string old = folder_ + "/old";
  if (!CopyWholeFile(target_, old)) return false;
  if (WriteOverFile(path_, target_)) return true;
  const int reason = errno;
  WriteOverFile(old, target_);
  errno = reason;
  return false;
}

bool MoveIntoPlace(const std::string& from, const std::string& to) {
  if (KeepPermissions(to, from) && RenameFile(from, to)) return true;
  // Another file system, mostly.
  Replacement file(to);
  if (!file.Create("wb") || !WriteOverFile(from, file.Path()) || !file.TakePlace()) return false;
  RemoveFile(from);
  return true;
}

}  // namespace platform
