// SPDX-License-Identifier: MIT
#include "package/add_member.h"

#include <minizip/zip.h>
#include <zlib.h>

#include <memory>
#include <new>
#include <optional>

#include "core/names.h"
#include "core/work_file.h"
#include "package/deflate_ahead.h"
#include "package/deflate_member.h"
#include "platform/files.h"
#include "platform/process.h"

namespace ts3d {
namespace {

constexpr size_t kCopyBufferSize = 16384;
/// From here on a member's header needs 64 bits for its sizes.
constexpr int64_t kLargeMember = 0xffffffff;

/// @param packed  how the member is deflated already; null: it is deflated as it is written
int32_t OpenMember(ConversionJob& job, const MemberSource& source, const DeflatedMember* packed) {
  // minizip writes headers that claim less than they have.
  constexpr size_t kLongestName = 0xffff;
  if (source.name.size() > kLongestName) return ZIP_PARAMERROR;
  zip_fileinfo info{};
  info.dosDate = job.memberDate  ? *job.memberDate
                 : source.isHeld ? platform::DosTimeNow()
                                 : platform::DosWriteTime(source.path);
  const bool isLarge = platform::FileSize(source.path) >= kLargeMember;
  if (packed && packed->isText) info.internal_fa = Z_TEXT;
  const int level = packed ? Z_DEFAULT_COMPRESSION : StreamLevel(job.packLevel);
  const int32_t result =
      zipOpenNewFileInZip2_64(job.packageHandle, source.name.c_str(), &info, nullptr, 0, nullptr, 0, "",
                              Z_DEFLATED, level, packed ? 1 : 0, isLarge ? 1 : 0);
  job.packageIsDamaged |= result != ZIP_OK;
  return result;
}

/// @return 0, or a negative code after its status line
int32_t WriteToMember(ConversionJob& job, const std::string& name, const char* data, size_t size) {
  const int32_t result = zipWriteInFileInZip(job.packageHandle, data, static_cast<unsigned>(size));
  if (result < 0) {
    NoteLostWrite(job);
    job.status.Send(Notice::MemberNotWritten, name);
  }
  return result;
}

/// @return 0, or a negative code after its status line
int32_t FillMember(ConversionJob& job, const MemberSource& source, char* buffer) {
  const std::string& name = source.name;
  if (const std::optional<std::string> held = job.heldFiles.Read(name); source.isHeld && held) {
    return WriteToMember(job, name, held->data(), held->size());
  }
  const platform::FilePtr file = source.path.empty() ? nullptr : OpenHostFile(job, source.path, "rb");
  if (!file) {
    job.status.Send(Notice::FileNotOpened, name);
    return ZIP_ERRNO;
  }
  for (bool isEmpty = true;; isEmpty = false) {
    const size_t size = std::fread(buffer, 1, kCopyBufferSize, file.get());
    if (size < kCopyBufferSize && !std::feof(file.get())) {
      // A member without anything in it can be seen; one without its end cannot.
      if (!isEmpty) job.packageIsDamaged = true;
      job.status.Send(Notice::FileNotRead, name);
      return ZIP_ERRNO;
    }
    if (size == 0) return ZIP_OK;
    const int32_t result = WriteToMember(job, name, buffer, size);
    if (result < 0) return result;
  }
}

int32_t ReportNoMemory(ConversionJob& job) {
  job.packageIsDamaged = true;
  job.status.Send(Notice::NoMemory);
  return ZIP_INTERNALERROR;
}

int32_t ReportNotOpened(ConversionJob& job, const std::string& name, int32_t result) {
  job.status.Send(Notice::MemberNotOpened, name);
  return result;
}

/// @param result  of closing the member
int32_t ReportClosing(ConversionJob& job, const std::string& name, int32_t result) {
  if (result != ZIP_OK) {
    NoteLostWrite(job);
    job.status.Send(Notice::MemberNotClosed, name);
  }
  return result;
}

int32_t AddStreamedMember(ConversionJob& job, const MemberSource& source) {
  const std::unique_ptr<char[]> buffer(new (std::nothrow) char[kCopyBufferSize]);
  if (!buffer) return ReportNoMemory(job);
  int32_t result = OpenMember(job, source, nullptr);
  if (result != ZIP_OK) return ReportNotOpened(job, source.name, result);
  // A member whose file fails stays open and becomes an empty one; the next member, or the end, closes it.
  result = FillMember(job, source, buffer.get());
  return result == ZIP_OK ? ReportClosing(job, source.name, zipCloseFileInZip(job.packageHandle)) : result;
}

/// Deflates what the source holds, or nothing when it cannot be read.
/// @return false when there is not enough memory
bool DeflateSource(const ConversionJob& job, const MemberSource& source, DeflatedMember& packed,
                   bool& isRead) {
  isRead = true;
  if (job.deflateAhead && !source.isHeld && job.deflateAhead->Take(source.path, packed)) return true;
  if (source.isHeld) {
    const std::optional<std::string> held = job.heldFiles.Read(source.name);
    isRead = held.has_value();
    return job.deflater->Deflate(held ? *held : std::string_view(), packed);
  }
  platform::MappedFile file;
  isRead = !source.path.empty() && MapHostFile(job, source.path, file);
  // A large file and what becomes of it take the place of the mesh that it was made of.
  constexpr size_t kLarge = 1 << 20;
  if (file.Bytes().size() >= kLarge) platform::ReturnFreedMemory();
  return job.deflater->Deflate(file.Bytes(), packed);
}

int32_t AddDeflatedMember(ConversionJob& job, const MemberSource& source) {
  const std::string& name = source.name;
  if (!job.deflater) job.deflater = std::make_shared<MemberDeflater>(*job.packLevel);
  DeflatedMember packed;
  bool isRead = false;
  if (!DeflateSource(job, source, packed, isRead)) return ReportNoMemory(job);
  int32_t result = OpenMember(job, source, &packed);
  if (result != ZIP_OK) return ReportNotOpened(job, name, result);
  if (!isRead) job.status.Send(Notice::FileNotOpened, name);
  result = WriteToMember(job, name, packed.bytes.get(), packed.size);
  if (result < 0) return result;
  result = ReportClosing(job, name,
                         zipCloseFileInZipRaw64(job.packageHandle, packed.unpackedSize, packed.checksum));
  return isRead ? result : ZIP_ERRNO;
}

}  // namespace

int32_t AddMember(ConversionJob& job, const MemberSource& source) {
  const bool isStreamed =
      !job.packLevel || (!source.isHeld && platform::FileSize(source.path) > kMostDeflatedAtOnce);
  return isStreamed ? AddStreamedMember(job, source) : AddDeflatedMember(job, source);
}

}  // namespace ts3d
