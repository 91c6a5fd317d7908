// SPDX-License-Identifier: MIT
#include "scene/sdk_manager.h"

#include <exception>
#include <new>

#include "platform/process.h"
#include "scene/fbx_reader.h"
#include "scene/gltf/gltf_reader.h"
#include "scene/other/other_reader.h"

namespace scene {

KFbxSdkManager::KFbxSdkManager() {
  // Asked last: some of them have no mark at their start.
  for (const other::ModelKind& kind : other::ModelKinds())
    readers_.Register(std::make_unique<OtherReader>(kind));
  readers_.Register(std::make_unique<GltfReader>());
  readers_.Register(std::make_unique<FbxReader>());
}

KFbxSdkManager* KFbxSdkManager::Create() {
  try {
    return new KFbxSdkManager;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void KFbxSdkManager::LoadPluginsDirectory(std::string_view folder, std::string_view extension) {
  for (const std::string& path : platform::FindPlugins(folder, extension, kRegisterReadersSymbol)) {
    const auto registerReaders =
        reinterpret_cast<KFbxRegisterReaders>(platform::LoadPlugin(path, kRegisterReadersSymbol));
    if (!registerReaders) continue;
    plugins_.push_back(path);
    try {
      registerReaders(readers_);
    } catch (const std::exception&) {
      // Its other readers are as good as they are; the plug-in only misses the rest.
    }
  }
}

KFbxScene* KFbxSdkManager::CreateScene(std::string_view name) {
  return scenes_.emplace_back(std::make_unique<KFbxScene>(name)).get();
}

KFbxImporter* KFbxSdkManager::CreateImporter(KFbxSceneGuard guard) {
  return importers_.emplace_back(std::make_unique<KFbxImporter>(readers_, std::move(guard))).get();
}

void KFbxSdkManager::DestroyImporter(const KFbxImporter* importer) {
  std::erase_if(importers_, [&](const auto& owned) { return owned.get() == importer; });
}

}  // namespace scene
