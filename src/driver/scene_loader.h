// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "scene/sdk_manager.h"

namespace ts3d {

/// Version of the FBX library and of the file that was loaded last.
struct LoadedVersions {
  scene::KFbxFileVersion sdk;
  scene::KFbxFileVersion file;
};

/// What an import is told beside the path of the model.
struct ImportChoices {
  std::string folder = {};  ///< where the files lie that belong to it, with a separator at its end
  std::string unit = {};    ///< see Settings::modelUnit
};

/// Creates the scene library's manager, with the plug-ins beside the running executable if `loadsPlugins`,
/// and an empty scene. Ends the process with exit status 0 when there is no manager to be had.
void CreateSdkObjects(scene::KFbxSdkManager*& manager, scene::KFbxScene*& scene, bool loadsPlugins = true);

/// Frees the manager and everything that it owns; null is ignored.
void DestroySdkObjects(scene::KFbxSdkManager* manager);

/// The scene library's objects of one run, which go with this.
class LoadedScene {
 public:
  LoadedScene() = default;
  ~LoadedScene() { Release(); }
  LoadedScene(const LoadedScene&) = delete;
  LoadedScene& operator=(const LoadedScene&) = delete;

  /// See CreateSdkObjects. Releases what was there before.
  void Create(bool loadsPlugins = true);
  /// The same without plug-ins.
  /// @throws std::bad_alloc instead of ending the process
  void CreateQuietly();
  void Release();

  scene::KFbxSdkManager& Manager() const { return *sdkManager_; }
  scene::KFbxScene& Scene() { return *scene_; }
  const scene::KFbxScene& Scene() const { return *scene_; }
  scene::KFbxNode& Root() { return *scene_->GetRootNode(); }
  const scene::KFbxNode& Root() const { return *scene_->GetRootNode(); }

 private:
  scene::KFbxSdkManager* sdkManager_ = nullptr;
  scene::KFbxScene* scene_ = nullptr;
};

/// Loads `path` into `scene`. Asks once for the password of a protected file.
/// @param error  gets why that failed; null: it is told on standard output
bool LoadScene(scene::KFbxSdkManager& manager, scene::KFbxScene& scene, const std::string& path,
               const ImportChoices& choices, LoadedVersions& versions, std::string* error = nullptr);

}  // namespace ts3d
