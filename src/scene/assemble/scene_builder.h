// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <set>
#include <span>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "scene/document/object_table.h"
#include "scene/document/properties.h"
#include "scene/model/material.h"
#include "scene/model/mesh.h"
#include "scene/model/scene.h"

namespace scene {

/// Makes scene objects from a document, one kind after the other. Objects of the document and of the scene go
/// together by their index in the object table.
class SceneBuilder {
 public:
  SceneBuilder(const RecordTree& tree, KFbxScene& scene);

  size_t ObjectCount() const { return table_.Objects().size(); }
  /// @param tell  told how much of it is done; may be empty
  void Build(const std::function<void(double done)>& tell);

 private:
  template <typename T>
  T* Made(uint32_t index) const {
    return index == ObjectTable::kRoot ? nullptr : dynamic_cast<T*>(made_[index]);
  }
  KFbxNode* NodeOf(uint32_t index) const;
  const PropertyTemplate* TemplateOf(std::string_view kind) const;

  // create_objects.cpp
  void CreateObjects();
  KFbxObject* CreateObject(const FbxObject& object);
  KFbxNode* CreateNode(const FbxObject& object);
  const TransformProperties& TransformOf(RecordRef channels);
  KFbxNodeAttribute* CreateAttribute(const FbxObject& object);
  KFbxObject* CreateDeformer(const FbxObject& object);
  KFbxSurfaceMaterial* CreateMaterial(const FbxObject& object);

  // connect_objects.cpp
  void ConnectNodes();
  void ConnectObjects();
  void Connect(const FbxConnection& connection);
  bool TakeOnce(uint32_t object);
  void ConnectToNode(uint32_t source, KFbxNode& node);
  void ConnectToMesh(uint32_t source, KFbxMesh& mesh);

  // connect_textures.cpp
  using ConnectedTextures = std::set<std::pair<const KFbxSurfaceMaterial*, const KFbxTexture*>>;
  void ConnectOldTextures();
  void ConnectOldTextures(const KFbxNode& node, KFbxMesh& mesh, std::span<KFbxTexture* const> textures,
                          const std::unordered_set<const KFbxSurfaceMaterial*>& textured,
                          ConnectedTextures& connected);

  // create_shapes.cpp
  void CreateShapes();
  void AddChannel(uint32_t channel, std::span<const uint32_t> targets, KFbxMesh& mesh);
  void AddInlineShapes(const FbxObject& geometry, KFbxMesh& mesh);

  // create_poses.cpp
  void CreatePoses();

  KFbxScene& scene_;
  ObjectTable table_;
  std::unordered_map<std::string_view, PropertyTemplate> templates_;
  std::vector<KFbxObject*> made_;
  std::unordered_map<uint32_t, TransformProperties> channelTransforms_;  ///< by the channels' record
  std::vector<bool> taken_;  ///< deformers that have found their place
};

}  // namespace scene
