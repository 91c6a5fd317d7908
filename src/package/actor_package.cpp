// SPDX-License-Identifier: MIT
#include "package/actor_package.h"

#include <minizip/zip.h>

#include <cstring>
#include <memory>
#include <new>

#include "core/names.h"
#include "core/status.h"
#include "core/work_file.h"

namespace ts3d {
namespace {

constexpr size_t kCopyBufferSize = 16384;
/// From here on a member's header needs 64 bits for its sizes.
constexpr int64_t kLargeMember = 0xffffffff;

/// The content of a member.
struct Source {
  const std::string& name;  ///< of the member
  std::string path;         ///< of the file; empty when the name leads out of the model's folder
  bool isHeld = false;      ///< the job has the bytes, which are not in the folder
};

Source WorkFileSource(const ConversionJob& job, const std::string& name) {
  if (job.heldFiles.Contains(name)) return {name, {}, true};
  return {name, IsPlainFileName(name) ? job.modelDirectory + name : std::string()};
}

int32_t OpenMember(ConversionJob& job, const Source& source) {
  // minizip writes headers that claim less than they have.
  constexpr size_t kLongestName = 0xffff;
  if (source.name.size() > kLongestName) return ZIP_PARAMERROR;
  zip_fileinfo info{};
  info.dosDate = source.isHeld ? platform::DosTimeNow() : platform::DosWriteTime(source.path);
  const bool isLarge = platform::FileSize(source.path) >= kLargeMember;
  const int32_t result = zipOpenNewFileInZip64(job.packageHandle, source.name.c_str(), &info, nullptr, 0,
                                               nullptr, 0, "", Z_DEFLATED, job.packageLevel, isLarge ? 1 : 0);
  job.packageIsDamaged |= result != ZIP_OK;
  return result;
}

/// @return 0, or a negative code after its status line
int32_t WriteToMember(ConversionJob& job, const std::string& name, const char* data, size_t size) {
  const int32_t result = zipWriteInFileInZip(job.packageHandle, data, static_cast<unsigned>(size));
  if (result < 0) {
    job.packageIsDamaged = true;
    StatusLog(job, ComposeMessage(">>> Error in writing ", name, " to the zip file"));
  }
  return result;
}

/// @return 0, or a negative code after its status line
int32_t FillMember(ConversionJob& job, const Source& source, char* buffer) {
  const std::string& name = source.name;
  if (const std::optional<std::string> held = job.heldFiles.Read(name); source.isHeld && held) {
    return WriteToMember(job, name, held->data(), held->size());
  }
  const platform::FilePtr file = source.path.empty() ? nullptr : OpenHostFile(job, source.path, "rb");
  if (!file) {
    StatusLog(job, ComposeMessage(">>> Error in opening ", name, " for reading"));
    return ZIP_ERRNO;
  }
  for (bool isEmpty = true;; isEmpty = false) {
    const size_t size = std::fread(buffer, 1, kCopyBufferSize, file.get());
    if (size < kCopyBufferSize && !std::feof(file.get())) {
      // A member without anything in it can be seen; one without its end cannot.
      if (!isEmpty) job.packageIsDamaged = true;
      StatusLog(job, ComposeMessage(">>> Error in reading ", name));
      return ZIP_ERRNO;
    }
    if (size == 0) return ZIP_OK;
    const int32_t result = WriteToMember(job, name, buffer, size);
    if (result < 0) return result;
  }
}

/// Whether the end of the archive tells how many members there are. From 65,535 on that takes a record that
/// minizip writes behind large archives only.
bool CountsAllMembers(const std::string& path) {
  constexpr size_t kLocatorSize = 20, kEndSize = 22, kCountOffset = 10;
  unsigned char end[kLocatorSize + kEndSize] = {};
  const platform::FilePtr file = platform::OpenFile(path, "rb");
  if (!file) return false;
  // The end of an empty archive is all there is.
  if (std::fseek(file.get(), -static_cast<long>(sizeof end), SEEK_END) != 0) return true;
  if (std::fread(end, 1, sizeof end, file.get()) != sizeof end) return false;
  const unsigned char* count = end + kLocatorSize + kCountOffset;
  return count[0] != 0xff || count[1] != 0xff || std::memcmp(end, "PK\x06\x07", 4) == 0;
}

}  // namespace

bool OpenActorPackage(ConversionJob& job, std::string_view path, PackageMode mode) {
  const std::string native = platform::NativePath(path);
  job.packagePath = path;
  job.packageIsDamaged = false;
  job.packageHandle =
      zipOpen64(native.c_str(), mode == PackageMode::Create ? APPEND_STATUS_CREATE : APPEND_STATUS_ADDINZIP);
  return job.packageHandle != nullptr;
}

namespace {

int32_t AddMember(ConversionJob& job, const Source& source) {
  const std::string& name = source.name;
  const std::unique_ptr<char[]> buffer(new (std::nothrow) char[kCopyBufferSize]);
  if (!buffer) {
    job.packageIsDamaged = true;
    StatusLog(job, ">>> Error allocating memory");
    return ZIP_INTERNALERROR;
  }
  int32_t result = OpenMember(job, source);
  if (result != ZIP_OK) {
    StatusLog(job, ComposeMessage(">>> Error in opening ", name, " in zipfile"));
    return result;
  }
  // A member whose file fails stays open and becomes an empty one; the next member, or the end, closes it.
  result = FillMember(job, source, buffer.get());
  if (result != ZIP_OK) return result;
  result = zipCloseFileInZip(job.packageHandle);
  if (result != ZIP_OK) {
    job.packageIsDamaged = true;
    StatusLog(job, ComposeMessage(">>> Error in closing ", name, " in the zip file"));
  }
  return result;
}

}  // namespace

int32_t AddFileToPackage(ConversionJob& job, PackagedNameSet& packagedNames, const std::string& name,
                         AfterAdding afterAdding) {
  // A member that fails is not tried again either.
  if (!packagedNames.insert(name).second) return 0;
  const int32_t result = AddMember(job, WorkFileSource(job, name));
  if (result == ZIP_OK && afterAdding == AfterAdding::DeleteFile && !job.heldFiles.Erase(name)) {
    platform::RemoveFile(job.ownsModelFolder ? job.modelDirectory + name : name);
  }
  return result;
}

int32_t AddDocumentToPackage(ConversionJob& job, PackagedNameSet& packagedNames, const std::string& path,
                             const std::string& name) {
  return packagedNames.insert(name).second ? AddMember(job, {name, path}) : 0;
}

bool CloseActorPackage(ConversionJob& job) {
  const int result = zipClose(job.packageHandle, "");
  job.packageHandle = nullptr;
  return result == ZIP_OK && !job.packageIsDamaged && CountsAllMembers(job.packagePath);
}

}  // namespace ts3d
