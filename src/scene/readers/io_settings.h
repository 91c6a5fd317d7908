// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string_view>

#include "scene/model/object.h"

namespace scene {

/// Paths of the settings that a password-protected file needs.
inline constexpr std::string_view kPasswordSetting = "Import|AdvOptGrp|FileFormat|Fbx|Password";
inline constexpr std::string_view kPasswordEnableSetting = "Import|AdvOptGrp|FileFormat|Fbx|Password_Enable";
/// Whether imports write the pictures that are embedded in a model; true unless set.
inline constexpr std::string_view kExtractEmbeddedSetting = "Import|AdvOptGrp|FileFormat|Fbx|ExtractEmbedded";

/// Folder, with a separator at its end, of the files that belong to a model; its own unless set. Empty: none.
inline constexpr std::string_view kModelFolderSetting = "Import|IncludeGrp|ModelFolder";

/// Unit of a file other than FBX: "m", "cm", "mm" or "inch"; that of its format unless set.
inline constexpr std::string_view kModelUnitSetting = "Import|IncludeGrp|ModelUnit";

/// Import and export settings, addressed by "|"-separated paths. There is one set for the whole process: what
/// is set stays in force for later imports.
class KFbxIOSettings {
 public:
  static KFbxIOSettings& Global();

  void SetStringProp(std::string_view path, std::string_view value) { texts_[KString(path)] = value; }
  void SetBoolProp(std::string_view path, bool value) { flags_[KString(path)] = value; }
  KString GetStringProp(std::string_view path, std::string_view otherwise) const;
  bool GetBoolProp(std::string_view path, bool otherwise) const;

 private:
  std::map<KString, KString, std::less<>> texts_;
  std::map<KString, bool, std::less<>> flags_;
};

}  // namespace scene
