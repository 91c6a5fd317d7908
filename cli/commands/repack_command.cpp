// SPDX-License-Identifier: MIT
#include "commands/repack_command.h"

#include <minizip/zip.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "actor/memory_archive.h"
#include "actor/package_contents.h"
#include "fbx_to_ts3d.h"
#include "host/find_packages.h"
#include "host/input_problem.h"
#include "host/source_date.h"
#include "output/exit_codes.h"
#include "output/terminal.h"
#include "package/archive_files.h"
#include "package/deflate_member.h"
#include "platform/file_system.h"
#include "platform/replacement.h"

namespace cli {
namespace fs = platform::fs;
namespace {

void Check(int result, const char* what) {
  if (result < 0) throw std::runtime_error(what);
}

/// The package's archive, within the limits of all commands.
class CheckedPackage {
 public:
  /// @throws Failure when the package is no sound archive or beyond the limits
  explicit CheckedPackage(const std::string& path) {
    std::string error;
    actor::ReadLimits limits;
    limits.keepsBytes = false;
    if (const auto problem = FindInputProblem(path)) throw Failure(problem->exitStatus, problem->text);
    if (!bytes_.Open(path, error)) throw Failure(kUnreadable, error);
    if (bytes_.Bytes().size() > limits.packageBytes) throw Failure(kUnreadable, "it is too large");
    if (!actor::ReadPackageBytes(bytes_.Bytes(), limits, contents_, error)) {
      const std::string known = RecognisePackage(path);
      throw Failure(kUnreadable, known.empty() ? error : known);
    }
    for (const actor::Member& member : Members()) {
      if (!member.sound && !member.superseded)
        throw Failure(kUnreadable, "\"" + member.name + "\" is damaged");
    }
    archive_.emplace(bytes_.Bytes());
  }

  unzFile Archive() const { return archive_->Handle(); }
  const std::vector<actor::Member>& Members() const { return contents_.members; }

 private:
  actor::PackageContents contents_;
  platform::MappedFile bytes_;
  std::optional<actor::MemoryArchive> archive_;
};

zip_fileinfo EntryLike(const unz_file_info64& info) {
  zip_fileinfo entry{};
  entry.dosDate = SourceDate().value_or(static_cast<uint32_t>(info.dosDate));
  entry.internal_fa = info.internal_fa;
  entry.external_fa = info.external_fa;
  return entry;
}

/// Copies the archive's current member, which is called `name`, as it is packed.
void CopyMember(unzFile from, const std::string& name, zipFile to) {
  unz_file_info64 info;
  Check(unzGetCurrentFileInfo64(from, &info, nullptr, 0, nullptr, 0, nullptr, 0), "a member cannot be read");
  int method = 0, level = 0;
  constexpr int kRaw = 1;
  Check(unzOpenCurrentFile2(from, &method, &level, kRaw), "a member cannot be opened");
  const zip_fileinfo entry = EntryLike(info);
  const int isLarge = info.uncompressed_size >= 0xffffffff ? 1 : 0;
  Check(zipOpenNewFileInZip2_64(to, name.c_str(), &entry, nullptr, 0, nullptr, 0, "", method, level, kRaw,
                                isLarge),
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

/// Adds the member `from` to `to`, deflated anew. Larger ones
/// than are deflated at once stay as they are packed.
void DeflateMember(unzFile from, const std::string& name, const ts3d::MemberDeflater& deflater, zipFile to) {
  unz_file_info64 info;
  Check(unzGetCurrentFileInfo64(from, &info, nullptr, 0, nullptr, 0, nullptr, 0), "a member cannot be read");
  if (info.uncompressed_size > static_cast<uint64_t>(ts3d::kMostDeflatedAtOnce))
    return CopyMember(from, name, to);
  std::string bytes(static_cast<size_t>(info.uncompressed_size), '\0');
  Check(unzOpenCurrentFile(from), "a member cannot be opened");
  const int size = unzReadCurrentFile(from, bytes.data(), static_cast<unsigned>(bytes.size()));
  if (size < 0 || static_cast<size_t>(size) != bytes.size())
    throw std::runtime_error("a member cannot be read");
  Check(unzCloseCurrentFile(from), "a member is damaged");
  ts3d::DeflatedMember packed;
  if (!deflater.Deflate(bytes, packed)) throw std::bad_alloc();
  const zip_fileinfo entry = EntryLike(info);
  Check(zipOpenNewFileInZip2(to, name.c_str(), &entry, nullptr, 0, nullptr, 0, "", Z_DEFLATED,
                             Z_DEFAULT_COMPRESSION, 1),
        "a member cannot be written");
  Check(zipWriteInFileInZip(to, packed.bytes.get(), static_cast<unsigned>(packed.size)),
        "a member cannot be written");
  Check(zipCloseFileInZipRaw64(to, packed.unpackedSize, packed.checksum), "a member cannot be written");
}

/// Writes the members that count into the new file `newPath`.
/// @param deflater  packs them anew; null: they stay as they are packed
/// @return how many members were dropped
size_t Repack(const CheckedPackage& package, const std::string& newPath,
              const ts3d::MemberDeflater* deflater) {
  zlib_filefunc64_def files = ts3d::ArchiveFiles();
  zipFile to = zipOpen2_64(newPath.c_str(), APPEND_STATUS_CREATE, nullptr, &files);
  if (!to) throw std::runtime_error("the new package cannot be written");
  size_t dropped = 0;
  try {
    int result = unzGoToFirstFile(package.Archive());
    for (const actor::Member& member : package.Members()) {
      Check(result, "a member cannot be found");
      if (member.superseded) {
        ++dropped;
      } else if (deflater) {
        DeflateMember(package.Archive(), member.name, *deflater, to);
      } else {
        CopyMember(package.Archive(), member.name, to);
      }
      result = unzGoToNextFile(package.Archive());
    }
  } catch (...) {
    zipClose(to, "");
    throw;
  }
  Check(zipClose(to, ""), "the new package cannot be completed");
  return dropped;
}

int RunRepack(const std::string& path, std::optional<int> level) {
  try {
    std::optional<CheckedPackage> package(std::in_place, path);
    const auto before = fs::file_size(path);
    platform::Replacement file(path, platform::Links::Follow);
    if (!file.Create("wb")) throw std::runtime_error("the new package cannot be written");
    std::optional<ts3d::MemberDeflater> deflater;
    if (level) deflater.emplace(*level);
    const size_t dropped = Repack(*package, file.Path(), deflater ? &*deflater : nullptr);
    package.reset();  // Windows replaces no file that is mapped
    if (!file.TakePlace()) throw std::runtime_error("the new package cannot be put into its place");
    std::printf("%s: %zu superseded members dropped, %ju bytes instead of %ju\n", Printable(path).c_str(),
                dropped, static_cast<uintmax_t>(fs::file_size(path)), static_cast<uintmax_t>(before));
    return kSuccess;
  } catch (const Failure& failure) {
    PrintMessage(path, Severity::Error, failure.what());
    return failure.exitStatus;
  } catch (const std::exception& error) {
    PrintMessage(path, Severity::Error, error.what());
    return kNotWritten;
  }
}

int RepackAll(const std::vector<std::string>& packages, std::optional<int> level) {
  ExitStatus all;
  for (const PackageInput& input : FindPackages(packages)) all.Add(RunRepack(input.name, level));
  return all.Get();
}

}  // namespace

void AddRepackCommand(CLI::App& app, RunCommand& run) {
  struct Options {
    std::vector<std::string> packages;
    bool strict = false;       ///< there are no warnings
    std::optional<int> level;  ///< none: members stay as they are packed
  };
  const auto options = std::make_shared<Options>();
  CLI::App& repack = AddCommand(app, "repack", "Drop superseded members from a package", run,
                                [options] { return RepackAll(options->packages, options->level); });
  repack.add_option("PACKAGE", options->packages, "Packages (.czp) and folders of them")
      ->required()
      ->type_name("");
  AddStrict(repack, options->strict);
  AddPackLevel(repack, options->level);
  SetFooter(repack,
            "  fbx2czp repack hero.czp\n"
            "      drops the documents that earlier changes left in the package\n"
            "  fbx2czp repack hero.czp --pack small\n"
            "      also deflates all members again, as small as they get\n");
}

}  // namespace cli
