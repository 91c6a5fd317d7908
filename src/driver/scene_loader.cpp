// SPDX-License-Identifier: MIT
#include "driver/scene_loader.h"

#include <cstdio>
#include <cstdlib>
#include <new>

#include "core/visible_text.h"
#include "mesh/claims/weigh_claims.h"
#include "platform/process.h"
#include "scene/fbx_reader.h"

namespace ts3d {
namespace {

using scene::EImportError;
using scene::KFbxImporter;

bool FailedFor(const KFbxImporter& importer, EImportError error) {
  return importer.GetLastErrorID() == static_cast<int>(error);
}

void ReportInitializeFailure(const KFbxImporter& importer, const std::string& path,
                             const LoadedVersions& versions) {
  std::printf("Call to KFbxImporter::Initialize() failed.\n");
  std::printf("Error returned: %s\n\n", VisibleText(importer.GetLastErrorString()).c_str());
  if (FailedFor(importer, EImportError::eVERSION_NOT_READABLE) ||
      FailedFor(importer, EImportError::eVERSION_NOT_SUPPORTED)) {
    const auto& [sdk, file] = versions;
    std::printf("FBX version number for this FBX SDK is %d.%d.%d\n", sdk.major, sdk.minor, sdk.revision);
    std::printf("FBX version number for file %s is %d.%d.%d\n\n", VisibleText(path).c_str(), file.major,
                file.minor, file.revision);
  }
  std::fflush(stdout);
}

void Choose(const ImportChoices& choices, scene::KFbxIOSettings& settings) {
  settings.SetStringProp(scene::kModelFolderSetting, choices.folder);
  settings.SetStringProp(scene::kModelUnitSetting, choices.unit);
}

/// Reads one word from standard input into the settings, for later imports as well, and imports again.
bool RetryWithPassword(KFbxImporter& importer, scene::KFbxIOSettings& own, scene::KFbxScene& scene) {
  std::printf("Please enter password:");
  std::fflush(stdout);
  char password[1024] = "";
  if (std::scanf("%1023s", password) != 1) password[0] = '\0';
  for (scene::KFbxIOSettings* settings : {&own, &scene::KFbxIOSettings::Global()}) {
    settings->SetStringProp(scene::kPasswordSetting, password);
    settings->SetBoolProp(scene::kPasswordEnableSetting, true);
  }
  if (importer.Import(scene, false)) return true;
  if (FailedFor(importer, EImportError::ePASSWORD_ERROR)) {
    std::printf("\nPassword is wrong, import aborted.\n");
    std::fflush(stdout);
  }
  return false;
}

}  // namespace

void CreateSdkObjects(scene::KFbxSdkManager*& manager, scene::KFbxScene*& scene, bool loadsPlugins) {
  manager = scene::KFbxSdkManager::Create();
  if (!manager) {
    std::printf("Unable to create the FBX SDK manager\n");
    std::exit(0);
  }
  if (loadsPlugins) {
    manager->LoadPluginsDirectory(platform::ExecutableFolder(), platform::SharedLibraryExtension());
  }
  scene = manager->CreateScene("");
}

void DestroySdkObjects(scene::KFbxSdkManager* manager) {
  if (manager) manager->Destroy();
}

void LoadedScene::Create(bool loadsPlugins) {
  Release();
  CreateSdkObjects(sdkManager_, scene_, loadsPlugins);
}

void LoadedScene::CreateQuietly() {
  Release();
  sdkManager_ = scene::KFbxSdkManager::Create();
  if (!sdkManager_) throw std::bad_alloc();
  scene_ = sdkManager_->CreateScene("");
}

void LoadedScene::Release() {
  DestroySdkObjects(sdkManager_);
  sdkManager_ = nullptr;
  scene_ = nullptr;
}

bool LoadScene(scene::KFbxSdkManager& manager, scene::KFbxScene& scene, const std::string& path,
               const ImportChoices& choices, LoadedVersions& versions, std::string* error) {
  versions.sdk = scene::kNativeVersion;
  KFbxImporter* importer = manager.CreateImporter(WeighClaims);
  scene::KFbxIOSettings settings = scene::KFbxIOSettings::Global();
  Choose(choices, settings);
  importer->SetIOSettings(settings);
  const bool initialized = importer->Initialize(path, -1);
  versions.file = importer->GetFileVersion();
  if (!initialized) {
    if (error) {
      *error = importer->GetLastErrorString();
    } else {
      ReportInitializeFailure(*importer, path, versions);
    }
    return false;
  }
  bool imported = importer->Import(scene, false);
  if (!imported && FailedFor(*importer, EImportError::ePASSWORD_ERROR)) {
    imported = RetryWithPassword(*importer, settings, scene);
  }
  if (!imported && error) *error = importer->GetLastErrorString();
  manager.DestroyImporter(importer);
  return imported;
}

}  // namespace ts3d
