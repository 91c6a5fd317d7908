// SPDX-License-Identifier: MIT
#include "scene/readers/open_model.h"

namespace scene {

std::shared_ptr<platform::MappedFile> OpenModelFile(std::string_view path, KFbxImportStatus& status) {
  auto file = std::make_shared<platform::MappedFile>();
  KString reason;
  if (file->Open(path, reason)) return file;
  status = {EImportError::eFILE_NOT_OPENED, "the file cannot be opened: " + reason};
  return nullptr;
}

}  // namespace scene
