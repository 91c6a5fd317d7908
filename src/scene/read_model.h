// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "scene/importer.h"

namespace scene {

/// A model to be read, with no settings of the process.
struct KFbxModelSource {
  std::string path;  ///< with backslashes
  /// The model, when it is not in the file; outlives the scene. No other files belong to it then.
  std::optional<std::string_view> bytes = std::nullopt;
  /// Where the files lie that belong to it, with a separator at its end; the folder of `path` unless set.
  std::optional<std::string> folder = std::nullopt;
  std::string unit = {};        ///< see kModelUnitSetting; empty: metres
  bool writesPictures = false;  ///< that are embedded in it, beside it
};

/// How that went.
struct KFbxModelResult {
  bool isRead = false;
  bool isProtected = false;  ///< by a password
  std::string error;         ///< why it was not read
  KFbxFileVersion version;   ///< of the file, as far as it is known; 0.0.0 otherwise
  std::string format;        ///< its name, as "FBX"; empty when no reader knows the file
};

/// Reads `model` into `scene`, unless `guard` refuses that.
/// @param progress  told how much of that is done; may be empty
KFbxModelResult ReadModel(const KFbxReaderRegistry& readers, const KFbxModelSource& model, KFbxScene& scene,
                          const KFbxSceneGuard& guard, const KFbxProgress& progress = nullptr);

}  // namespace scene
