// SPDX-License-Identifier: MIT
#include "config/mesh_list.h"

#include <algorithm>

#include "core/names.h"
#include "core/trace.h"
#include "scene/model/mesh.h"
#include "scene/model/scene.h"
#include "scene/model/walk_nodes.h"

namespace ts3d {

MeshList::MeshList(const scene::KFbxNode& root) {
  scene::WalkNodes(root, [&](const scene::KFbxNode& node) {
    if (&node == &root || !node.IsMesh()) return scene::Below::Visit;
    Mesh& listed = meshes_.emplace_back(Mesh{SanitizeMeshName(node.GetName())});
    const scene::KFbxMesh* mesh = node.GetMesh();
    if (!mesh || mesh->GetControlPointsCount() == 0) return scene::Below::Skip;
    listed.nameCount = mesh->GetLayerCount() > 0 ? std::max(node.GetMaterialCount(), 1) : 1;
    isEmpty_ = false;
    return scene::Below::Visit;
  });
}

void MeshList::ForEach(OwnName place, const std::function<void(const ListedName&)>& visit) const {
  for (const Mesh& mesh : meshes_) {
    DebugTrace(ComposeMessage("WriteMeshList '", mesh.name, "'"));
    const bool isFirst = place == OwnName::First;
    for (int i = 0; i < mesh.nameCount; ++i) {
      visit({SliceName(mesh.name, isFirst ? i : (i + 1) % mesh.nameCount), mesh.name});
    }
  }
}

size_t MeshList::CountNames() const {
  size_t count = 0;
  for (const Mesh& mesh : meshes_) count += static_cast<size_t>(mesh.nameCount);
  return count;
}

bool IsLeftOut(const ListedName& listed, const MeshFilter& filter) {
  return skipThisMesh(listed.name, filter) || IsExcluded(listed.mesh, filter);
}

}  // namespace ts3d
