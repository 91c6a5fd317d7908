// SPDX-License-Identifier: MIT
#pragma once

#include "scene/readers/reader_registry.h"

namespace scene {

/// The FBX version that the library calls its own.
inline constexpr KFbxFileVersion kNativeVersion{7, 7, 0};

/// Reads FBX 2.0 to 8.x, binary and ASCII.
class FbxReader : public KFbxReader {
 public:
  bool Detects(std::string_view head) const override;
  std::unique_ptr<KFbxOpenFile> Open(std::string_view path, const KFbxProgress& progress,
                                     KFbxFileVersion& version, KFbxImportStatus& status) const override;
  std::unique_ptr<KFbxOpenFile> OpenMemory(std::string_view path, std::string_view bytes,
                                           const KFbxProgress& progress, KFbxFileVersion& version,
                                           KFbxImportStatus& status) const override;
  const char* FormatName() const override { return "FBX"; }
};

/// Reads all records of `tree.bytes`, whichever container and version they are, and sets the tree's version
/// as far as it can be told.
KFbxImportStatus ReadFbxRecords(RecordTree& tree);

}  // namespace scene
