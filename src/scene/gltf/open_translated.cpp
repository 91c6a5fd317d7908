// SPDX-License-Identifier: MIT
#include "scene/gltf/open_translated.h"

#include "scene/gltf/open_gltf.h"

namespace scene::gltf {

double CentimetresIn(std::string_view unit, const Conventions& conventions) {
  if (unit.empty()) return conventions.centimetres;
  const double centimetres = unit == "cm" ? 1.0 : unit == "mm" ? 0.1 : unit == "inch" ? 2.54 : 100.0;
  return centimetres / conventions.unitsTaken;
}

std::string FolderOfModel(const KFbxIOSettings& settings, std::string_view path) {
  const std::string_view folder = path.substr(0, path.find_last_of("\\/") + 1);
  return settings.GetStringProp(kModelFolderSetting, folder.empty() ? ".\\" : folder);
}

std::unique_ptr<KFbxOpenFile> OpenTranslated(std::string_view glb, std::shared_ptr<const void> storage,
                                             Conventions conventions, std::string_view path,
                                             const KFbxProgress& progress, KFbxImportStatus& status) {
  KFbxFileVersion version;
  return OpenGltf({glb, std::move(storage)}, path, &conventions, progress, version, status);
}

}  // namespace scene::gltf
