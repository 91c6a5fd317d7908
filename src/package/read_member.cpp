// SPDX-License-Identifier: MIT
#include "package/read_member.h"

#include <minizip/unzip.h>

#include <functional>
#include <memory>

#include "core/json_writer.h"
#include "package/archive_files.h"

namespace ts3d {
namespace {

constexpr uint64_t kLargestMember = 64 << 20;

using Archive = std::unique_ptr<void, int (*)(void*)>;

Archive Open(const std::string& path) {
  zlib_filefunc64_def files = ArchiveFiles();
  return {unzOpen2_64(path.c_str(), &files), unzClose};
}

/// Calls `visit` with each member, which is the current one of `archive` then.
void ForEachMember(void* archive, const std::function<void(MemberSize)>& visit) {
  std::string name(0xffff + 1, '\0');
  for (int result = archive ? unzGoToFirstFile(archive) : UNZ_ERRNO; result == UNZ_OK;
       result = unzGoToNextFile(archive)) {
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(archive, &info, name.data(), static_cast<uLong>(name.size() - 1), nullptr, 0,
                                nullptr, 0) != UNZ_OK) {
      return;
    }
    visit({name.substr(0, info.size_filename), info.uncompressed_size});
  }
}

/// The current member of `archive`; empty when it is not sound.
std::optional<std::string> ReadCurrent(void* archive, uint64_t size) {
  if (size > kLargestMember || unzOpenCurrentFile(archive) != UNZ_OK) return std::nullopt;
  std::string bytes(static_cast<size_t>(size), '\0');
  const int read = unzReadCurrentFile(archive, bytes.data(), static_cast<unsigned>(bytes.size()));
  const bool isWhole = unzCloseCurrentFile(archive) == UNZ_OK && read == static_cast<int>(bytes.size());
  return isWhole ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace

std::optional<PackageMember> ReadLastMember(const std::string& path, std::string_view ending) {
  const Archive archive = Open(path);
  std::optional<MemberSize> last;
  unz64_file_pos place{};
  ForEachMember(archive.get(), [&](MemberSize member) {
    if (!member.name.ends_with(ending)) return;
    last = std::move(member);
    unzGetFilePos64(archive.get(), &place);
  });
  if (!last || unzGoToFilePos64(archive.get(), &place) != UNZ_OK) return std::nullopt;
  std::optional<std::string> bytes = ReadCurrent(archive.get(), last->bytes);
  if (!bytes) return std::nullopt;
  return PackageMember{std::move(last->name), std::move(*bytes)};
}

std::vector<std::string> ReadMembers(const std::string& path, std::string_view name) {
  const Archive archive = Open(path);
  std::vector<std::string> found;
  uint64_t left = kLargestMember;
  ForEachMember(archive.get(), [&](const MemberSize& member) {
    if (member.name != name || member.bytes > left) return;
    left -= member.bytes;
    if (std::optional<std::string> bytes = ReadCurrent(archive.get(), member.bytes))
      found.push_back(std::move(*bytes));
  });
  return found;
}

std::vector<MemberSize> ListMembers(const std::string& path) {
  const Archive archive = Open(path);
  std::vector<MemberSize> members;
  ForEachMember(archive.get(), [&](MemberSize member) { members.push_back(std::move(member)); });
  return members;
}

void WriteMembers(JsonWriter& json, const std::vector<MemberSize>& members) {
  json.Objects("members", members, [&](const MemberSize& member) {
    json.Member("name", member.name);
    json.Member("bytes", member.bytes);
  });
}

}  // namespace ts3d
