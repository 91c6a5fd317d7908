// SPDX-License-Identifier: MIT
#include "package/actor_package.h"

#include <minizip/zip.h>

#include <cstring>
#include <thread>

#include "core/names.h"
#include "core/work_file.h"
#include "package/add_member.h"
#include "package/deflate_ahead.h"
#include "package/deflate_member.h"
#include "platform/files.h"

namespace ts3d {
namespace {

MemberSource WorkFileSource(const ConversionJob& job, const std::string& name) {
  if (job.heldFiles.Contains(name)) return {name, {}, true};
  return {name, IsPlainFileName(name) ? job.modelDirectory + name : std::string()};
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

void WorkFileBegins(ConversionJob& job, const std::string& name) {
  if (job.deflateAhead) job.deflateAhead->Forget(job.modelDirectory + name);
}

void WorkFileEnds(ConversionJob& job, const std::string& name) {
  if (!job.packLevel || !job.packageHandle || std::thread::hardware_concurrency() < 2) return;
  if (!job.deflateAhead) job.deflateAhead = std::make_shared<DeflateAhead>(*job.packLevel);
  job.deflateAhead->Start(job.modelDirectory + name);
}

int32_t AddDocumentToPackage(ConversionJob& job, PackagedNameSet& packagedNames, const std::string& path,
                             const std::string& name) {
  return packagedNames.insert(name).second ? AddMember(job, {name, path}) : 0;
}

bool CloseActorPackage(ConversionJob& job) {
  const int result = zipClose(job.packageHandle, "");
  if (result != ZIP_OK) NoteLostWrite(job);
  job.packageHandle = nullptr;
  job.deflater.reset();
  job.deflateAhead.reset();
  return result == ZIP_OK && !job.packageIsDamaged && CountsAllMembers(job.packagePath);
}

}  // namespace ts3d
