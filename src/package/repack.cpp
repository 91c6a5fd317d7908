// SPDX-License-Identifier: MIT
#include "package/repack.h"

#include <minizip/unzip.h>
#include <minizip/zip.h>

#include <memory>
#include <new>
#include <stdexcept>

#include "package/archive_files.h"
#include "package/deflate_member.h"

namespace ts3d {
namespace {

constexpr const char* kNotRead = "a member cannot be read";
constexpr const char* kNotWritten = "a member cannot be written";

void Check(int result, const char* what) {
  if (result < 0) throw std::runtime_error(what);
}

/// Copies members from one archive to another.
class MemberCopier {
 public:
  MemberCopier(const std::string& from, const std::string& to, const RepackOptions& options)
      : date_(options.date), from_(nullptr, unzClose) {
    zlib_filefunc64_def files = ArchiveFiles();
    from_.reset(unzOpen2_64(from.c_str(), &files));
    if (!from_) throw std::runtime_error("the package cannot be read");
    if (options.level) deflater_.emplace(*options.level);
    to_ = zipOpen2_64(to.c_str(), APPEND_STATUS_CREATE, nullptr, &files);
    if (!to_) throw std::runtime_error("the new package cannot be written");
  }
  ~MemberCopier() {
    if (to_) zipClose(to_, "");
  }
  MemberCopier(const MemberCopier&) = delete;
  MemberCopier& operator=(const MemberCopier&) = delete;

  void Copy(const std::vector<bool>& keeps) {
    int result = unzGoToFirstFile(from_.get());
    for (const bool isKept : keeps) {
      Check(result, "a member cannot be found");
      if (isKept) CopyCurrent();
      result = unzGoToNextFile(from_.get());
    }
    void* const complete = to_;
    to_ = nullptr;
    Check(zipClose(complete, ""), "the new package cannot be completed");
  }

 private:
  /// Deflates the current member anew, if that is asked for. Larger ones than are deflated at once stay as they
  /// are packed.
  void CopyCurrent() {
    unz_file_info64 info;
    std::string name(0xffff + 1, '\0');
    Check(unzGetCurrentFileInfo64(from_.get(), &info, name.data(), static_cast<uLong>(name.size() - 1),
                                  nullptr, 0, nullptr, 0),
          kNotRead);
    name.resize(info.size_filename);
    if (deflater_ && info.uncompressed_size <= static_cast<uint64_t>(kMostDeflatedAtOnce)) {
      DeflateAnew(name, info);
    } else {
      CopyAsPacked(name, info);
    }
  }

  void CopyAsPacked(const std::string& name, const unz_file_info64& info) {
    int method = 0, level = 0;
    Check(unzOpenCurrentFile2(from_.get(), &method, &level, 1), "a member cannot be opened");
    OpenMember(name, info, method, level);
    std::vector<char> buffer(1 << 16);
    for (;;) {
      const int size = unzReadCurrentFile(from_.get(), buffer.data(), static_cast<unsigned>(buffer.size()));
      Check(size, kNotRead);
      if (size == 0) break;
      Check(zipWriteInFileInZip(to_, buffer.data(), static_cast<unsigned>(size)), kNotWritten);
    }
    Check(zipCloseFileInZipRaw64(to_, info.uncompressed_size, info.crc), kNotWritten);
    Check(unzCloseCurrentFile(from_.get()), "a member is damaged");
  }

  void DeflateAnew(const std::string& name, const unz_file_info64& info) {
    std::string bytes(static_cast<size_t>(info.uncompressed_size), '\0');
    Check(unzOpenCurrentFile(from_.get()), "a member cannot be opened");
    const int size = unzReadCurrentFile(from_.get(), bytes.data(), static_cast<unsigned>(bytes.size()));
    if (size < 0 || static_cast<size_t>(size) != bytes.size()) throw std::runtime_error(kNotRead);
    Check(unzCloseCurrentFile(from_.get()), "a member is damaged");
    DeflatedMember packed;
    if (!deflater_->Deflate(bytes, packed)) throw std::bad_alloc();
    OpenMember(name, info, Z_DEFLATED, Z_DEFAULT_COMPRESSION);
    Check(zipWriteInFileInZip(to_, packed.bytes.get(), static_cast<unsigned>(packed.size)), kNotWritten);
    Check(zipCloseFileInZipRaw64(to_, packed.unpackedSize, packed.checksum), kNotWritten);
  }

  /// Begins a member like the one that `info` tells about, which gets bytes that are packed.
  void OpenMember(const std::string& name, const unz_file_info64& info, int method, int level) {
    zip_fileinfo entry{};
    entry.dosDate = date_.value_or(static_cast<uint32_t>(info.dosDate));
    entry.internal_fa = info.internal_fa;
    entry.external_fa = info.external_fa;
    const int isLarge = info.uncompressed_size >= 0xffffffff ? 1 : 0;
    Check(zipOpenNewFileInZip2_64(to_, name.c_str(), &entry, nullptr, 0, nullptr, 0, "", method, level, 1,
                                  isLarge),
          kNotWritten);
  }

  const std::optional<uint32_t> date_;
  std::unique_ptr<void, int (*)(void*)> from_;
  std::optional<MemberDeflater> deflater_;
  void* to_ = nullptr;
};

}  // namespace

void RepackPackage(const std::string& from, const std::vector<bool>& keeps, const std::string& to,
                   const RepackOptions& options) {
  MemberCopier(from, to, options).Copy(keeps);
}

}  // namespace ts3d
