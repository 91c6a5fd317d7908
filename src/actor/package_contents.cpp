// SPDX-License-Identifier: MIT
#include "actor/package_contents.h"

#include <algorithm>

#include "core/names.h"
#include "platform/file_system.h"
#include "platform/files.h"

namespace actor {
namespace fs = platform::fs;
namespace {

/// The files of the folder `path`, by name.
bool ListFiles(const std::string& path, const ReadLimits& limits, std::vector<fs::path>& files,
               std::string& error) {
  std::error_code failed;
  for (fs::directory_iterator entry(path, failed), end; !failed && entry != end; entry.increment(failed)) {
    std::error_code unknown;
    if (!entry->is_regular_file(unknown)) continue;
    if (files.size() == limits.members) return error = "it holds too many files", false;
    files.push_back(entry->path());
  }
  std::sort(files.begin(), files.end());
  if (failed) error = failed.message();
  return !failed;
}

std::string DateOf(const std::string& path) {
  const uint32_t dos = platform::DosWriteTime(path);
  if (dos == 0) return {};
  const auto part = [dos](int shift, uint32_t mask) { return static_cast<int>(dos >> shift & mask); };
  return FormatDate(1980 + part(25, 0x7f), part(21, 0xf), part(16, 0x1f), part(11, 0x1f), part(5, 0x3f));
}

bool ReadFolder(const std::string& path, const ReadLimits& limits, PackageContents& contents,
                std::string& error) {
  std::vector<fs::path> files;
  if (!ListFiles(path, limits, files, error)) return false;
  uint64_t total = 0;
  for (const fs::path& file : files) {
    Member& member = contents.members.emplace_back();
    member.name = file.filename().string();
    member.date = DateOf(file.string());
    std::error_code unknown;
    member.packedSize = fs::file_size(file, unknown);
    if (unknown || member.packedSize == 0) continue;
    total += member.packedSize;
    if (member.packedSize > limits.memberBytes || total > limits.totalBytes) {
      return error = "\"" + member.name + "\" is too large", false;
    }
    platform::MappedFile bytes;
    std::string reason;
    member.sound = bytes.Open(file.string(), reason);
    member.bytes = bytes.Bytes();
    member.size = member.bytes.size();
  }
  return true;
}

bool ReadArchive(const std::string& path, const ReadLimits& limits, PackageContents& contents,
                 std::string& error) {
  const int64_t size = platform::FileSize(path);
  if (size >= 0 && static_cast<uint64_t>(size) > limits.packageBytes) return error = "it is too large", false;
  platform::MappedFile file;
  return file.Open(path, error) && ReadPackageBytes(file.Bytes(), limits, contents, error);
}

}  // namespace

std::string FormatDate(int year, int month, int day, int hour, int minute) {
  const auto two = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  return std::to_string(year) + "-" + two(month) + "-" + two(day) + " " + two(hour) + ":" + two(minute);
}

const Member* PackageContents::Find(std::string_view name) const {
  const Member* similar = nullptr;
  for (const Member& member : members) {
    if (member.superseded) continue;
    if (member.name == name) return &member;
    if (ts3d::EqualsIgnoreCase(member.name, name)) similar = &member;
  }
  return similar;
}

bool ReadPackage(const std::string& path, const ReadLimits& limits, PackageContents& contents,
                 std::string& error) {
  contents = {};
  std::error_code unknown;
  contents.isFolder = fs::is_directory(path, unknown);
  if (contents.isFolder ? ReadFolder(path, limits, contents, error)
                        : ReadArchive(path, limits, contents, error)) {
    return true;
  }
  contents = {};
  return false;
}

}  // namespace actor
