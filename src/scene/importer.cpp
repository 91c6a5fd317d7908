// SPDX-License-Identifier: MIT
#include "scene/importer.h"

#include <new>

#include "platform/files.h"

namespace scene {
namespace {

constexpr size_t kHeadSize = 4096;

}  // namespace

bool KFbxImporter::Initialize(std::string_view path, int) {
  file_.reset();
  version_ = {};
  status_ = {};
  platform::MappedFile head;
  KString reason;
  if (!head.Open(path, reason)) {
    status_ = {EImportError::eFILE_NOT_OPENED, "the file cannot be opened: " + reason};
    return false;
  }
  if (head.Bytes().empty()) {
    status_ = {EImportError::eFORMAT_UNKNOWN, "the file is empty"};
    return false;
  }
  const KFbxReader* reader = readers_.Find(head.Bytes().substr(0, kHeadSize));
  if (!reader) {
    status_ = {EImportError::eFORMAT_UNKNOWN, "the file is not an FBX file"};
    return false;
  }
  try {
    file_ = reader->Open(path, version_, status_);
  } catch (const std::bad_alloc&) {
    status_ = {EImportError::eOUT_OF_MEMORY, "there is not enough memory to read the file"};
  }
  return file_ != nullptr;
}

bool KFbxImporter::Import(KFbxScene& scene, bool) {
  if (!file_) {
    if (status_.Succeeded()) status_ = {EImportError::eFILE_NOT_OPENED, "no file is open"};
    return false;
  }
  try {
    status_ = file_->Read(scene, KFbxIOSettings::Global());
  } catch (const std::bad_alloc&) {
    status_ = {EImportError::eOUT_OF_MEMORY, "there is not enough memory to read the file"};
  }
  return status_.Succeeded();
}

}  // namespace scene
