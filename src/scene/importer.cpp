// SPDX-License-Identifier: MIT
#include "scene/importer.h"

#include <new>

#include "scene/readers/embedded_files.h"
#include "scene/readers/open_model.h"

namespace scene {
namespace {

constexpr size_t kHeadSize = 4096;
constexpr const char* kNoMemory = "there is not enough memory to read the file";

}  // namespace

/// Forgets any file before. Null, with the status set, for what no reader knows.
const KFbxReader* KFbxImporter::FindReader(std::string_view bytes) {
  file_.reset();
  version_ = {};
  format_ = "";
  status_ = {};
  const KFbxReader* reader = bytes.empty() ? nullptr : readers_.Find(bytes.substr(0, kHeadSize));
  if (!reader) {
    status_ = {EImportError::eFORMAT_UNKNOWN,
               bytes.empty() ? "the file is empty" : "the file is of no format that is read"};
  }
  if (reader) format_ = reader->FormatName();
  return reader;
}

bool KFbxImporter::Initialize(std::string_view path, int) {
  file_.reset();
  version_ = {};
  try {
    const auto head = OpenModelFile(path, status_);
    const KFbxReader* reader = head ? FindReader(head->Bytes()) : nullptr;
    if (!reader) return false;
    path_ = path;
    file_ = reader->Open(path, progress_, version_, status_);
  } catch (const std::bad_alloc&) {
    status_ = {EImportError::eOUT_OF_MEMORY, kNoMemory};
  }
  return file_ != nullptr;
}

bool KFbxImporter::InitializeFromMemory(std::string_view path, std::string_view bytes) {
  const KFbxReader* reader = FindReader(bytes);
  if (!reader) return false;
  path_ = path;
  try {
    file_ = reader->OpenMemory(path, bytes, progress_, version_, status_);
  } catch (const std::bad_alloc&) {
    status_ = {EImportError::eOUT_OF_MEMORY, kNoMemory};
  }
  return file_ != nullptr;
}

KFbxImportStatus KFbxImporter::Read(KFbxScene& scene) {
  KFbxImportStatus status = file_->Read(scene, *settings_);
  if (!status.Succeeded()) return status;
  if (KString refusal = guard_(scene); !refusal.empty()) {
    scene.Clear();
    return {EImportError::eFILE_CORRUPTED, std::move(refusal)};
  }
  ExtractEmbeddedFiles(scene, path_, settings_->GetBoolProp(kExtractEmbeddedSetting, true));
  return status;
}

bool KFbxImporter::Import(KFbxScene& scene, bool) {
  if (!file_) {
    if (status_.Succeeded()) status_ = {EImportError::eFILE_NOT_OPENED, "no file is open"};
    return false;
  }
  try {
    status_ = Read(scene);
  } catch (const std::bad_alloc&) {
    status_ = {EImportError::eOUT_OF_MEMORY, kNoMemory};
  }
  return status_.Succeeded();
}

}  // namespace scene
