// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "scene/readers/reader_registry.h"

namespace scene {

class KFbxSdkManager;

/// Says why a scene is not taken that was just read, and of which nothing is decoded yet; empty when it is.
using KFbxSceneGuard = std::function<KString(KFbxScene& scene)>;

/// Imports one file into a scene.
class KFbxImporter {
 public:
  KFbxImporter(const KFbxReaderRegistry& readers, KFbxSceneGuard guard)
      : readers_(readers), guard_(std::move(guard)) {}

  /// Opens `path`, whatever its extension says, with the reader that knows its content.
  /// @param format  -1: the content decides; no other value is known
  [[nodiscard]] bool Initialize(std::string_view path, int format = -1);
  /// The same for a file whose content is `bytes`, which outlive the importer and the scene. `path` stands
  /// for it in all that lies beside a file; nothing has to be there.
  [[nodiscard]] bool InitializeFromMemory(std::string_view path, std::string_view bytes);
  /// Imports with these settings, which outlive the importer, instead of the global ones.
  void SetIOSettings(const KFbxIOSettings& settings) { settings_ = &settings; }
  /// Is told how much of Initialize and Import together is done; set before.
  void SetProgressCallback(KFbxProgress progress) { progress_ = std::move(progress); }
  /// Fills `scene` from the open file, unless the guard refuses it; writes the pictures that are embedded in it beside the
  /// file, as the settings say. May be called again after a password error.
  [[nodiscard]] bool Import(KFbxScene& scene, bool nonBlocking = false);
  /// Version of the file, as far as Initialize could tell it; 0.0.0 otherwise.
  KFbxFileVersion GetFileVersion() const { return version_; }
  /// Name of the file's format, as "FBX"; empty when no reader knows the file, or for one that does not say.
  const char* GetFormatName() const { return format_; }

  int GetLastErrorID() const { return static_cast<int>(status_.error); }
  const char* GetLastErrorString() const { return status_.text.c_str(); }

 private:
  const KFbxReader* FindReader(std::string_view bytes);
  KFbxImportStatus Read(KFbxScene& scene);

  const KFbxReaderRegistry& readers_;
  KFbxSceneGuard guard_;
  const KFbxIOSettings* settings_ = &KFbxIOSettings::Global();
  KFbxProgress progress_;
  std::unique_ptr<KFbxOpenFile> file_;
  KString path_;
  KFbxFileVersion version_;
  const char* format_ = "";
  KFbxImportStatus status_;
};

}  // namespace scene
