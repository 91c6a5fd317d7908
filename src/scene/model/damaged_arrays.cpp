// SPDX-License-Identifier: MIT
#include "scene/model/mesh.h"
#include "scene/model/scene.h"

namespace scene {
namespace {

KString Quoted(std::string_view name) { return "\"" + KString(name) + "\""; }

/// What of the node's mesh the record belongs to; empty when it is none of that mesh.
KString OwnerBelow(const KFbxNode& node, uint32_t record) {
  const KFbxMesh* mesh = node.GetMesh();
  if (!mesh) return {};
  const KString meshName = "mesh " + Quoted(node.GetName());
  if (mesh->GetRecord().Holds(record)) return meshName;
  for (const KFbxShape& shape : mesh->GetShapes()) {
    if (shape.record.Holds(record)) return "a shape of " + meshName;
  }
  for (int skin = 0; skin < mesh->GetSkinCount(); ++skin) {
    for (int i = 0; i < mesh->GetSkin(skin)->GetClusterCount(); ++i) {
      const KFbxCluster& cluster = *mesh->GetSkin(skin)->GetCluster(i);
      if (!cluster.GetRecord().Holds(record)) continue;
      return cluster.GetLink() ? "bone " + Quoted(cluster.GetLink()->GetName()) + " in " + meshName
                               : meshName;
    }
  }
  return {};
}

}  // namespace

std::vector<KString> KFbxScene::GetDamagedArrays() {
  std::vector<KString> damaged;
  if (!tree_) return damaged;
  for (const uint32_t record : tree_->Damaged()) {
    KString owner;
    ForEach<KFbxNode>([&](const KFbxNode& node) {
      if (owner.empty()) owner = OwnerBelow(node, record);
    });
    damaged.push_back(Quoted(tree_->records[record].name) + (owner.empty() ? "" : " of " + owner));
  }
  return damaged;
}

}  // namespace scene
