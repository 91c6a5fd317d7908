// SPDX-License-Identifier: MIT
#include <minizip/zip.h>
#include <zlib.h>

#include <memory>
#include <new>
#include <optional>

#include "package/actor_package.h"
#include "package/deflate_ahead.h"
#include "package/deflate_member.h"
#include "platform/files.h"
#include "platform/heap.h"

namespace ts3d {
namespace {

constexpr size_t kCopyBufferSize = 16384;
/// From here on a member's header needs 64 bits for its sizes.
constexpr int64_t kLargeMember = 0xffffffff;

}  // namespace

/// @param packed  how the member is deflated already; null: it is deflated as it is written
int32_t ActorPackage::OpenMember(const Source& source, const DeflatedMember* packed) {
  // minizip writes headers that claim less than they have.
  constexpr size_t kLongestName = 0xffff;
  const bool fits = source.name.size() <= kLongestName;
  zip_fileinfo info{};
  info.dosDate = settings_.memberDate ? *settings_.memberDate
                 : source.isHeld      ? platform::DosTimeNow()
                                      : platform::DosWriteTime(source.path);
  const bool isLarge = platform::FileSize(source.path) >= kLargeMember;
  if (packed && packed->isText) info.internal_fa = Z_TEXT;
  const int level = packed ? Z_DEFAULT_COMPRESSION : StreamLevel(settings_.packLevel);
  const int32_t result =
      !fits ? ZIP_PARAMERROR
            : zipOpenNewFileInZip2_64(archive_, source.name.c_str(), &info, nullptr, 0, nullptr, 0, "",
                                      Z_DEFLATED, level, packed ? 1 : 0, isLarge ? 1 : 0);
  files_.packageIsDamaged |= fits && result != ZIP_OK;
  if (result != ZIP_OK) status_.Send(Notice::MemberNotOpened, source.name);
  return result;
}

int32_t ActorPackage::WriteToMember(const std::string& name, const char* data, size_t size) {
  const int32_t result = zipWriteInFileInZip(archive_, data, static_cast<unsigned>(size));
  if (result < 0) {
    NoteLostWrite(files_);
    status_.Send(Notice::MemberNotWritten, name);
  }
  return result;
}

int32_t ActorPackage::FillMember(const Source& source, char* buffer) {
  const std::string& name = source.name;
  if (const std::optional<std::string> held = files_.held.Read(name); source.isHeld && held) {
    return WriteToMember(name, held->data(), held->size());
  }
  const platform::FilePtr file = source.path.empty() ? nullptr : OpenHostFile(files_, source.path, "rb");
  if (!file) {
    status_.Send(Notice::FileNotOpened, name);
    return ZIP_ERRNO;
  }
  for (bool isEmpty = true;; isEmpty = false) {
    const size_t size = std::fread(buffer, 1, kCopyBufferSize, file.get());
    if (size < kCopyBufferSize && !std::feof(file.get())) {
      // A member without anything in it can be seen; one without its end cannot.
      if (!isEmpty) files_.packageIsDamaged = true;
      status_.Send(Notice::FileNotRead, name);
      return ZIP_ERRNO;
    }
    if (size == 0) return ZIP_OK;
    const int32_t result = WriteToMember(name, buffer, size);
    if (result < 0) return result;
  }
}

int32_t ActorPackage::ReportNoMemory() {
  files_.packageIsDamaged = true;
  status_.Send(Notice::NoMemory);
  return ZIP_INTERNALERROR;
}

/// @param result  of closing the member
int32_t ActorPackage::FinishMember(const std::string& name, int32_t result) {
  if (result != ZIP_OK) {
    NoteLostWrite(files_);
    status_.Send(Notice::MemberNotClosed, name);
  }
  return result;
}

int32_t ActorPackage::AddStreamedMember(const Source& source) {
  const std::unique_ptr<char[]> buffer(new (std::nothrow) char[kCopyBufferSize]);
  if (!buffer) return ReportNoMemory();
  int32_t result = OpenMember(source, nullptr);
  if (result != ZIP_OK) return result;
  // A member whose file fails stays open and becomes an empty one; the next member, or the end, closes it.
  result = FillMember(source, buffer.get());
  return result == ZIP_OK ? FinishMember(source.name, zipCloseFileInZip(archive_)) : result;
}

/// Deflates what the source holds, or nothing when it cannot be read.
/// @return false when there is not enough memory
bool ActorPackage::DeflateSource(const Source& source, DeflatedMember& packed, bool& isRead) {
  isRead = true;
  if (ahead_ && !source.isHeld && ahead_->Take(source.path, packed)) return true;
  if (source.isHeld) {
    const std::optional<std::string> held = files_.held.Read(source.name);
    isRead = held.has_value();
    return deflater_->Deflate(held ? *held : std::string_view(), packed);
  }
  platform::MappedFile file;
  isRead = !source.path.empty() && MapHostFile(files_, source.path, file);
  // A large file and what becomes of it take the place of the mesh that it was made of.
  if (file.Bytes().size() >= settings_.largeFile) platform::ReturnFreedMemory();
  return deflater_->Deflate(file.Bytes(), packed);
}

int32_t ActorPackage::AddDeflatedMember(const Source& source) {
  const std::string& name = source.name;
  if (!deflater_) deflater_ = std::make_unique<MemberDeflater>(*settings_.packLevel);
  DeflatedMember packed;
  bool isRead = false;
  if (!DeflateSource(source, packed, isRead)) return ReportNoMemory();
  int32_t result = OpenMember(source, &packed);
  if (result != ZIP_OK) return result;
  if (!isRead) status_.Send(Notice::FileNotOpened, name);
  result = WriteToMember(name, packed.bytes.get(), packed.size);
  if (result < 0) return result;
  result = FinishMember(name, zipCloseFileInZipRaw64(archive_, packed.unpackedSize, packed.checksum));
  return isRead ? result : ZIP_ERRNO;
}

int32_t ActorPackage::AddMember(const Source& source) {
  const bool isStreamed =
      !settings_.packLevel || (!source.isHeld && platform::FileSize(source.path) > kMostDeflatedAtOnce);
  return isStreamed ? AddStreamedMember(source) : AddDeflatedMember(source);
}

}  // namespace ts3d
