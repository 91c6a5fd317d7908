// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/open_translated.h"

namespace scene::gltf {

/// The bytes of a file.
struct FileBytes {
  std::string_view bytes;
  std::shared_ptr<const void> storage;  ///< of `bytes`; null where somebody else keeps them
};

/// Reads the text of a file; its data is read with the scene.
/// @param translated  null for a model of glTF itself
/// @return null with `status` set when it cannot be read
std::unique_ptr<KFbxOpenFile> OpenGltf(FileBytes file, std::string_view path, Conventions* translated,
                                       const KFbxProgress& progress, KFbxFileVersion& version,
                                       KFbxImportStatus& status);

}  // namespace scene::gltf
