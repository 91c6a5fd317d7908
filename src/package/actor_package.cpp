// SPDX-License-Identifier: MIT
#include "package/actor_package.h"

#include <minizip/zip.h>

#include <cstring>
#include <thread>

#include "core/names.h"
#include "package/archive_files.h"
#include "package/deflate_ahead.h"
#include "package/deflate_member.h"
#include "platform/files.h"

namespace ts3d {
namespace {

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

ActorPackage::ActorPackage(WorkFiles& files, const Settings& settings, const StatusChannel& status)
    : files_(files), settings_(settings), status_(status) {}

ActorPackage::~ActorPackage() {
  if (archive_) CloseArchive();
}

bool ActorPackage::Open(std::string_view path, PackageMode mode) {
  files_.packagePath = path;
  files_.packageIsDamaged = false;
  zlib_filefunc64_def functions = ArchiveFiles();
  archive_ = zipOpen2_64(files_.packagePath.c_str(),
                         mode == PackageMode::Create ? APPEND_STATUS_CREATE : APPEND_STATUS_ADDINZIP, nullptr,
                         &functions);
  return archive_ != nullptr;
}

ActorPackage::Source ActorPackage::WorkFileSource(const std::string& name) const {
  if (files_.held.Contains(name)) return {name, {}, true};
  return {name, IsPlainFileName(name) ? files_.modelDirectory + name : std::string()};
}

int32_t ActorPackage::AddFileToPackage(const std::string& name, AfterAdding afterAdding) {
  // A member that fails is not tried again either.
  if (!names_.insert(name).second) return 0;
  const int32_t result = AddMember(WorkFileSource(name));
  if (result == ZIP_OK && afterAdding == AfterAdding::DeleteFile && !files_.held.Erase(name)) {
    platform::RemoveFile(settings_.ownsModelFolder ? files_.modelDirectory + name : name);
  }
  return result;
}

int32_t ActorPackage::AddDocumentToPackage(const std::string& path, const std::string& name) {
  return names_.insert(name).second ? AddMember({name, path}) : 0;
}

void ActorPackage::WorkFileBegins(const std::string& name) {
  if (ahead_) ahead_->Forget(files_.modelDirectory + name);
}

void ActorPackage::WorkFileEnds(const std::string& name) {
  if (!settings_.packLevel || !archive_ || files_.held.Contains(name) ||
      std::thread::hardware_concurrency() < 2)
    return;
  if (!ahead_) ahead_ = std::make_unique<DeflateAhead>(*settings_.packLevel);
  ahead_->Start(files_.modelDirectory + name);
}

bool ActorPackage::Close() {
  const bool isClosed = CloseArchive();
  deflater_.reset();
  ahead_.reset();
  return isClosed && !files_.packageIsDamaged && CountsAllMembers(files_.packagePath);
}

bool ActorPackage::CloseArchive() {
  const int result = zipClose(archive_, "");
  if (result != ZIP_OK) NoteLostWrite(files_);
  archive_ = nullptr;
  return result == ZIP_OK;
}

}  // namespace ts3d
