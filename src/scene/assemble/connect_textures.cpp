// SPDX-License-Identifier: MIT
#include <map>
#include <set>

#include "scene/assemble/scene_builder.h"

namespace scene {
namespace {

constexpr std::string_view kDiffuse = "DiffuseColor";

}  // namespace

/// Old files connect textures to the node and let the mesh say, by polygon, which of them is meant. They
/// become textures of the materials of the same polygons, unless a material has textures of its own.
void SceneBuilder::ConnectOldTextures() {
  std::map<uint32_t, std::vector<KFbxTexture*>> texturesOf;
  for (const auto& [source, destination, property] : table_.Connections()) {
    auto* texture = Made<KFbxTexture>(source);
    if (texture && property.empty() && Made<KFbxNode>(destination))
      texturesOf[destination].push_back(texture);
  }
  if (texturesOf.empty()) return;
  std::unordered_set<const KFbxSurfaceMaterial*> textured;
  scene_.ForEach<KFbxSurfaceMaterial>([&](const KFbxSurfaceMaterial& material) {
    if (material.FindProperty(kDiffuse)) textured.insert(&material);
  });
  // Nodes that share a material may bring it the same texture.
  ConnectedTextures connected;
  for (const auto& [index, textures] : texturesOf) {
    KFbxNode& node = *Made<KFbxNode>(index);
    if (KFbxMesh* mesh = node.GetMesh()) ConnectOldTextures(node, *mesh, textures, textured, connected);
  }
}

void SceneBuilder::ConnectOldTextures(const KFbxNode& node, KFbxMesh& mesh,
                                      std::span<KFbxTexture* const> textures,
                                      const std::unordered_set<const KFbxSurfaceMaterial*>& textured,
                                      ConnectedTextures& connected) {
  const LayerElementSource source = mesh.FindDiffuseTextures();
  FbxArray<int32_t> ids;
  if (source.modes.mapping == EMappingMode::eNONE || !ReadArray(source.index, ids) || ids.empty()) return;
  const auto connect = [&](int32_t materialIndex, int32_t id) {
    if (materialIndex < 0 || materialIndex >= node.GetMaterialCount() || id < 0 ||
        static_cast<size_t>(id) >= textures.size()) {
      return;
    }
    KFbxSurfaceMaterial* material = node.GetMaterial(materialIndex);
    KFbxTexture* texture = textures[static_cast<size_t>(id)];
    if (textured.contains(material) || !connected.emplace(material, texture).second) return;
    material->ConnectTexture(kDiffuse, *texture);
  };
  if (source.modes.mapping == EMappingMode::eALL_SAME) {
    for (int i = 0; i < node.GetMaterialCount(); ++i) connect(i, ids[0]);
  } else if (source.modes.mapping == EMappingMode::eBY_POLYGON) {
    const KFbxLayerElementMaterial* materials = mesh.GetMaterials();
    for (size_t polygon = 0; polygon < ids.size(); ++polygon) {
      connect(materials ? materials->GetMaterialIndex(polygon, 0) : 0, ids[polygon]);
    }
  }
}

}  // namespace scene
