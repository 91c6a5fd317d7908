// SPDX-License-Identifier: MIT
#pragma once

#include "scene/other/model_kinds.h"
#include "scene/readers/reader_registry.h"

namespace scene {

/// Reads a format by a library that was not made for hostile files: a process of its own translates the model into
/// glTF, and what it says is checked like any such file.
class OtherReader : public KFbxReader {
 public:
  /// @param kind  one of other::ModelKinds()
  explicit OtherReader(const other::ModelKind& kind) : kind_(kind) {}

  bool Detects(std::string_view head) const override;
  std::unique_ptr<KFbxOpenFile> Open(std::string_view path, const KFbxProgress& progress,
                                     KFbxFileVersion& version, KFbxImportStatus& status) const override;
  std::unique_ptr<KFbxOpenFile> OpenMemory(std::string_view path, std::string_view bytes,
                                           const KFbxProgress& progress, KFbxFileVersion& version,
                                           KFbxImportStatus& status) const override;
  const char* FormatName() const override { return kind_.name; }

 private:
  const other::ModelKind& kind_;
};

}  // namespace scene
