// SPDX-License-Identifier: MIT
#include "repack_command.h"

#include <minizip/unzip.h>
#include <minizip/zip.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <vector>

#include "fbx_to_ts3d.h"
#include "terminal.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

struct CloseUnzip {
  void operator()(void* package) const { unzClose(package); }
};
using PackageReader = std::unique_ptr<void, CloseUnzip>;

void Check(int result, const char* what) {
  if (result < 0) throw std::runtime_error(what);
}

/// A member of the package that is read.
struct Member {
  std::string name;
  unz64_file_pos position{};
};

std::string CurrentName(void* package, unz_file_info64& info) {
  Check(unzGetCurrentFileInfo64(package, &info, nullptr, 0, nullptr, 0, nullptr, 0),
        "a member cannot be read");
  std::string name(info.size_filename, '\0');
  Check(unzGetCurrentFileInfo64(package, &info, name.data(), info.size_filename, nullptr, 0, nullptr, 0),
        "a member cannot be read");
  return name;
}

/// The last member of each name, in package order.
std::vector<Member> LastMembers(void* package, size_t& count) {
  std::vector<Member> all;
  int result = unzGoToFirstFile(package);
  for (; result == UNZ_OK; result = unzGoToNextFile(package)) {
    unz_file_info64 info;
    Member member;
    member.name = CurrentName(package, info);
    Check(unzGetFilePos64(package, &member.position), "a member cannot be found");
    all.push_back(std::move(member));
  }
  // Members behind a damaged entry of the directory would be lost.
  if (result != UNZ_END_OF_LIST_OF_FILE) throw std::runtime_error("the package's directory is damaged");
  count = all.size();
  std::map<std::string, size_t> last;
  for (size_t i = 0; i < all.size(); ++i) last[all[i].name] = i;
  std::vector<Member> kept;
  for (size_t i = 0; i < all.size(); ++i) {
    if (last[all[i].name] == i) kept.push_back(all[i]);
  }
  return kept;
}

void CopyMember(void* from, const Member& member, void* to) {
  unz64_file_pos position = member.position;
  unz_file_info64 info;
  Check(unzGoToFilePos64(from, &position), "a member cannot be found");
  CurrentName(from, info);
  int method = 0, level = 0;
  constexpr int kRaw = 1;
  Check(unzOpenCurrentFile2(from, &method, &level, kRaw), "a member cannot be opened");
  zip_fileinfo entry{};
  entry.dosDate = info.dosDate;
  entry.internal_fa = info.internal_fa;
  entry.external_fa = info.external_fa;
  const int isLarge = info.uncompressed_size >= 0xffffffff ? 1 : 0;
  Check(zipOpenNewFileInZip2_64(to, member.name.c_str(), &entry, nullptr, 0, nullptr, 0, "", method, level,
                                kRaw, isLarge),
        "a member cannot be written");
  std::vector<char> buffer(1 << 16);
  for (;;) {
    const int size = unzReadCurrentFile(from, buffer.data(), static_cast<unsigned>(buffer.size()));
    Check(size, "a member cannot be read");
    if (size == 0) break;
    Check(zipWriteInFileInZip(to, buffer.data(), static_cast<unsigned>(size)), "a member cannot be written");
  }
  Check(zipCloseFileInZipRaw64(to, info.uncompressed_size, info.crc), "a member cannot be written");
  Check(unzCloseCurrentFile(from), "a member is damaged");
}

/// @return how many members were dropped
size_t Repack(const fs::path& path, const fs::path& newPath) {
  const PackageReader from(unzOpen64(path.string().c_str()));
  if (!from) throw std::runtime_error("the package cannot be opened");
  size_t count = 0;
  const std::vector<Member> members = LastMembers(from.get(), count);
  zipFile to = zipOpen64(newPath.string().c_str(), APPEND_STATUS_CREATE);
  if (!to) throw std::runtime_error("the new package cannot be written");
  try {
    for (const Member& member : members) CopyMember(from.get(), member, to);
  } catch (...) {
    zipClose(to, "");
    throw;
  }
  Check(zipClose(to, ""), "the new package cannot be completed");
  return count - members.size();
}

int RunRepack(const std::string& path) {
  const fs::path newPath = path + ".new";
  try {
    const auto before = fs::file_size(path);
    const size_t dropped = Repack(path, newPath);
    fs::rename(newPath, path);
    std::printf("%s: %zu superseded members dropped, %ju bytes instead of %ju\n", path.c_str(), dropped,
                static_cast<uintmax_t>(fs::file_size(path)), static_cast<uintmax_t>(before));
    return FBX_TO_TS3D_OK;
  } catch (const std::exception& error) {
    std::error_code ignored;
    fs::remove(newPath, ignored);
    PrintMessage(path, Severity::Error, error.what());
    return FBX_TO_TS3D_UPDATE_FAILED;
  }
}

}  // namespace

void AddRepackCommand(CLI::App& app, RunCommand& run) {
  const auto package = std::make_shared<std::string>();
  CLI::App& repack = AddCommand(app, "repack", "Drop superseded members from a package", run,
                                [package] { return RunRepack(*package); });
  repack.add_option("PACKAGE", *package, "The .czp file")->required()->type_name("");
  SetFooter(repack,
            "  fbx2czp repack hero.czp\n"
            "      drops the documents that earlier changes left in the package\n");
}

}  // namespace cli
