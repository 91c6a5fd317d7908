// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "mesh/claims/weigh_claims.h"
#include "scene/model/mesh.h"
#include "support/check_scene.h"
#include "support/gltf_builder.h"
#include "support/load_scene.h"

namespace support {

/// What a glTF file is read as.
struct LoadedGltf {
  std::string bytes;  ///< of the file, which the scene points into
  ManagerPtr manager{scene::KFbxSdkManager::Create()};
  scene::KFbxScene* scene = manager->CreateScene("");
  std::string error;

  /// @param path  of the file; empty: it is in memory, with nothing beside it
  explicit LoadedGltf(std::string file, const std::string& path = "") : bytes(std::move(file)) {
    scene::KFbxImporter& importer = *manager->CreateImporter(ts3d::WeighClaims);
    scene::KFbxIOSettings settings;
    settings.SetBoolProp(scene::kExtractEmbeddedSetting, false);
    if (path.empty()) settings.SetStringProp(scene::kModelFolderSetting, "");
    importer.SetIOSettings(settings);
    const bool read = (path.empty() ? importer.InitializeFromMemory("", bytes) : importer.Initialize(path)) &&
                      importer.Import(*scene);
    if (!read) error = importer.GetLastErrorString();
    CheckScene(*scene);
  }
  explicit LoadedGltf(const GltfFile& file) : LoadedGltf(file.Glb()) {}

  scene::KFbxNode& Node(const char* name) const {
    scene::KFbxNode* node = FindNode(*scene, name);
    if (!node) throw std::runtime_error(error + ": no node " + name);
    return *node;
  }
  scene::KFbxMesh& Mesh(const char* name) const { return *Node(name).GetMesh(); }
  /// Where the bind pose has the bone.
  std::vector<double> BoundAt(const char* bone) const {
    const scene::KFbxPose& pose = *scene->GetPose(0);
    return Xyz(pose.GetMatrix(pose.Find(&Node(bone))).GetT());
  }
};

inline std::vector<double> PointsOf(scene::KFbxMesh& mesh) {
  return {mesh.GetControlPoints().begin(), mesh.GetControlPoints().end()};
}

/// "012 213 " for two triangles, with the points in the order of `mesh`.
inline std::string TrianglesOf(scene::KFbxMesh& mesh) {
  std::string text;
  for (uint32_t i = 0; i < mesh.GetPolygons().Count(); ++i) {
    const scene::KFbxPolygon polygon = mesh.GetPolygons()[i];
    for (uint32_t k = 0; k < polygon.size; ++k)
      text += std::to_string(mesh.GetPolygonVertices()[polygon.firstCorner + k]);
    text += ' ';
  }
  return text;
}

/// Points of a square of two triangles.
inline const std::vector<float> kSquare{0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0};

/// A skin of joints, each with an inverse bind matrix that only moves.
inline size_t AddSkin(GltfFile& file, const std::vector<size_t>& joints,
                      const std::vector<std::vector<float>>& moves) {
  std::vector<float> matrices;
  for (const std::vector<float>& m : moves)
    matrices.insert(matrices.end(), {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, m[0], m[1], m[2], 1});
  GltfFile::Json skin = {{"joints", joints}};
  if (!moves.empty()) skin["inverseBindMatrices"] = file.Numbers(GltfFile::kF32, "MAT4", 16, matrices);
  return file.Add("skins", skin);
}

}  // namespace support
