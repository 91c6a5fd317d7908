// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "mesh/claims/weigh_claims.h"
#include "platform/helper_process.h"
#include "scene/model/mesh.h"
#include "support/load_scene.h"
#include "support/temp_folder.h"

namespace support {

/// A model in a folder of its own, loaded through the process that translates it.
class OtherModel : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(platform::FindOwnPart("translate_model")))
      GTEST_SKIP() << "built without assimp";
  }

  /// What loading `path` ends with.
  std::string Load(const std::string& path) {
    scene::KFbxImporter& importer = *manager_->CreateImporter(ts3d::WeighClaims);
    scene_ = manager_->CreateScene("");
    if (!importer.Initialize(folder_.Path(path)) || !importer.Import(*scene_))
      return importer.GetLastErrorString();
    meshes_ = 0;
    scene_->ForEach<scene::KFbxMesh>([&](const scene::KFbxMesh&) { ++meshes_; });
    std::string files;
    for (const scene::KString& file : scene_->GetDataFiles())
      files += file.substr(file.find_last_of("\\/") + 1) + " ";
    return files;
  }

  std::vector<double> PointsOf(const char* node) const {
    const std::span<const double> points = FindNode(*scene_, node)->GetMesh()->GetControlPoints();
    return {points.begin(), points.end()};
  }

  TempFolder folder_;
  ManagerPtr manager_{scene::KFbxSdkManager::Create()};
  scene::KFbxScene* scene_ = nullptr;
  size_t meshes_ = 0;  ///< in the model
};

}  // namespace support
