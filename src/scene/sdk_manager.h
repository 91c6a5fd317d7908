// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "scene/importer.h"
#include "scene/model/scene.h"

namespace scene {

/// Owns scenes, importers and the registry of readers; everything goes with it.
class KFbxSdkManager {
 public:
  /// Null when there is no memory for a manager.
  static KFbxSdkManager* Create();
  /// Frees this object and all that it owns.
  void Destroy() { delete this; }

  /// Lets every library in `folder` whose file extension is `extension` and that exports
  /// kRegisterReadersSymbol register its readers. Others are ignored, also those that cannot be loaded.
  void LoadPluginsDirectory(std::string_view folder, std::string_view extension);

  /// Paths of the plug-ins that were loaded.
  const std::vector<std::string>& GetPlugins() const { return plugins_; }

  KFbxReaderRegistry& GetReaderRegistry() { return readers_; }
  KFbxScene* CreateScene(std::string_view name);
  KFbxImporter* CreateImporter(KFbxSceneGuard guard);
  void DestroyImporter(const KFbxImporter* importer);

 private:
  KFbxSdkManager();
  ~KFbxSdkManager() = default;

  KFbxReaderRegistry readers_;
  std::vector<std::string> plugins_;
  std::vector<std::unique_ptr<KFbxScene>> scenes_;
  std::vector<std::unique_ptr<KFbxImporter>> importers_;
};

struct KFbxSdkManagerDestroyer {
  void operator()(KFbxSdkManager* manager) const { manager->Destroy(); }
};
using KFbxSdkManagerPtr = std::unique_ptr<KFbxSdkManager, KFbxSdkManagerDestroyer>;

}  // namespace scene
