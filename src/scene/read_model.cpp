// SPDX-License-Identifier: MIT
#include "scene/read_model.h"

#include "scene/readers/io_settings.h"

namespace scene {

KFbxModelResult ReadModel(const KFbxReaderRegistry& readers, const KFbxModelSource& model, KFbxScene& scene,
                          const KFbxSceneGuard& guard, const KFbxProgress& progress) {
  KFbxIOSettings settings;
  settings.SetStringProp(kModelUnitSetting, model.unit);
  settings.SetBoolProp(kExtractEmbeddedSetting, model.writesPictures);
  if (model.bytes) {
    settings.SetStringProp(kModelFolderSetting, {});
  } else if (model.folder) {
    settings.SetStringProp(kModelFolderSetting, *model.folder);
  }
  KFbxImporter importer(readers, guard);
  importer.SetIOSettings(settings);
  importer.SetProgressCallback(progress);
  const bool isOpen =
      model.bytes ? importer.InitializeFromMemory(model.path, *model.bytes) : importer.Initialize(model.path);
  KFbxModelResult result;
  result.version = importer.GetFileVersion();
  result.isRead = isOpen && importer.Import(scene);
  result.format = importer.GetFormatName();
  result.isProtected = importer.GetLastErrorID() == static_cast<int>(EImportError::ePASSWORD_ERROR);
  if (!result.isRead) result.error = importer.GetLastErrorString();
  return result;
}

}  // namespace scene
