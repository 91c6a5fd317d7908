// SPDX-License-Identifier: MIT
#include "scene/gltf/gltf_reader.h"

#include "base/plain_text.h"
#include "scene/gltf/open_gltf.h"
#include "scene/readers/open_model.h"

namespace scene {

bool GltfReader::Detects(std::string_view head) const {
  return head.starts_with("glTF") || base::TextStart(head).starts_with('{');
}

std::unique_ptr<KFbxOpenFile> GltfReader::Open(std::string_view path, const KFbxProgress& progress,
                                               KFbxFileVersion& version, KFbxImportStatus& status) const {
  auto file = OpenModelFile(path, status);
  if (!file) return nullptr;
  const std::string_view bytes = file->Bytes();
  return gltf::OpenGltf({bytes, std::move(file)}, path, nullptr, progress, version, status);
}

std::unique_ptr<KFbxOpenFile> GltfReader::OpenMemory(std::string_view path, std::string_view bytes,
                                                     const KFbxProgress& progress, KFbxFileVersion& version,
                                                     KFbxImportStatus& status) const {
  return gltf::OpenGltf({bytes, nullptr}, path, nullptr, progress, version, status);
}

}  // namespace scene
