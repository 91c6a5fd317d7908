// SPDX-License-Identifier: MIT
#include "scene/assemble/scene_builder.h"

namespace scene {

/// Every node has one parent, the one of its last connection, and children stand in the order of their
/// connections. What no chain of connections ties to the root stays out of the tree, and with it every cycle.
void SceneBuilder::ConnectNodes() {
  constexpr uint32_t kNone = 0xffffffff;
  const std::span<const FbxConnection> connections = table_.Connections();
  std::vector<uint32_t> parentConnection(made_.size(), kNone);
  std::vector<std::vector<uint32_t>> childrenOf(made_.size());
  std::vector<uint32_t> rootChildren;
  const auto joinsNodes = [&](const FbxConnection& c) {
    return c.property.empty() && Made<KFbxNode>(c.source) && NodeOf(c.destination) &&
           c.source != c.destination;
  };
  for (uint32_t i = 0; i < connections.size(); ++i) {
    if (joinsNodes(connections[i])) parentConnection[connections[i].source] = i;
  }
  for (uint32_t i = 0; i < connections.size(); ++i) {
    const FbxConnection& c = connections[i];
    if (c.source == ObjectTable::kRoot || parentConnection[c.source] != i) continue;
    (c.destination == ObjectTable::kRoot ? rootChildren : childrenOf[c.destination]).push_back(c.source);
  }
  struct Pending {
    KFbxNode* node;
    const std::vector<uint32_t>* children;
  };
  std::vector<Pending> pending{{scene_.GetRootNode(), &rootChildren}};
  while (!pending.empty()) {
    const Pending next = pending.back();
    pending.pop_back();
    for (const uint32_t child : *next.children) {
      next.node->AddChild(*Made<KFbxNode>(child));
      pending.push_back({Made<KFbxNode>(child), &childrenOf[child]});
    }
  }
}

void SceneBuilder::ConnectObjects() {
  for (const FbxConnection& connection : table_.Connections()) Connect(connection);
}

void SceneBuilder::Connect(const FbxConnection& connection) {
  const auto [source, destination, property] = connection;
  if (auto* material = Made<KFbxSurfaceMaterial>(destination)) {
    if (property.empty() || source == ObjectTable::kRoot) return;
    const ObjectKind kind = table_[source].kind;
    if (kind == ObjectKind::Texture || kind == ObjectKind::LayeredTexture) {
      material->ConnectTexture(property, *made_[source]);
    }
    return;
  }
  if (!property.empty()) return;
  if (auto* node = Made<KFbxNode>(destination)) {
    ConnectToNode(source, *node);
  } else if (auto* mesh = Made<KFbxMesh>(destination)) {
    ConnectToMesh(source, *mesh);
  } else if (auto* skin = Made<KFbxSkin>(destination)) {
    if (auto* cluster = Made<KFbxCluster>(source); cluster && TakeOnce(source)) skin->AddCluster(*cluster);
  } else if (auto* cluster = Made<KFbxCluster>(destination)) {
    cluster->SetLink(NodeOf(source));
  } else if (auto* texture = Made<KFbxTexture>(destination)) {
    if (auto* video = Made<KFbxVideo>(source)) texture->SetVideo(*video);
  } else if (auto* layers = Made<KFbxLayeredTexture>(destination)) {
    if (auto* layer = Made<KFbxTexture>(source)) layers->AddLayer(*layer);
  }
}

/// A cluster belongs to one skin and a skin to one mesh: the first that takes it.
bool SceneBuilder::TakeOnce(uint32_t object) {
  const bool isFree = !taken_[object];
  taken_[object] = true;
  return isFree;
}

void SceneBuilder::ConnectToNode(uint32_t source, KFbxNode& node) {
  if (auto* attribute = Made<KFbxNodeAttribute>(source)) node.SetNodeAttribute(*attribute);
  if (auto* material = Made<KFbxSurfaceMaterial>(source)) node.AddMaterial(*material);
}

void SceneBuilder::ConnectToMesh(uint32_t source, KFbxMesh& mesh) {
  if (auto* skin = Made<KFbxSkin>(source); skin && TakeOnce(source)) mesh.AddSkin(*skin);
}

}  // namespace scene
