// SPDX-License-Identifier: MIT
#pragma once

#include "scene/readers/reader_registry.h"

namespace scene {

/// Reads glTF 2.0: ".gltf", ".glb" and the avatars ".vrm", which are GLB.
class GltfReader : public KFbxReader {
 public:
  bool Detects(std::string_view head) const override;
  std::unique_ptr<KFbxOpenFile> Open(std::string_view path, const KFbxProgress& progress,
                                     KFbxFileVersion& version, KFbxImportStatus& status) const override;
  std::unique_ptr<KFbxOpenFile> OpenMemory(std::string_view path, std::string_view bytes,
                                           const KFbxProgress& progress, KFbxFileVersion& version,
                                           KFbxImportStatus& status) const override;
  const char* FormatName() const override { return "glTF"; }
};

}  // namespace scene
