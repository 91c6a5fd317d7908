// SPDX-License-Identifier: MIT
#include "scene/assemble/check_claims.h"

#include <algorithm>

#include "scene/model/mesh.h"

namespace scene {
namespace {

/// Text that a name becomes in all lists of the document.
uint64_t ListedSize(const KFbxNode& node) {
  return static_cast<uint64_t>(std::max(node.GetMaterialCount(), 1)) * (4 * node.GetName().size() + 200);
}

/// What a name costs where it is repeated for each vertex, as the lines for lost texture coordinates do.
uint64_t NameWork(const KFbxNode& node, const KFbxMeshClaim& claim) {
  constexpr uint64_t kUsualName = 1024, kVertexWork = 32;
  const uint64_t length = node.GetName().size();
  if (length <= kUsualName) return 0;
  return std::min(claim.work / kVertexWork, UINT64_MAX / 2 / length) * length;
}

}  // namespace

KString FindExcessiveClaim(KFbxScene& scene, uint64_t fileSize, uint64_t allowance) {
  // A mesh may serve thousands of nodes and is converted for each of them.
  const uint64_t mostWork = 512 * fileSize + (uint64_t{2} << 30);
  uint64_t work = 0, nameWork = 0, text = 0;
  KString excess;
  scene.ForEach<KFbxNode>([&](const KFbxNode& node) {
    KFbxMesh* mesh = node.GetParent() ? node.GetMesh() : nullptr;
    if (!mesh || !excess.empty()) return;
    work += mesh->GetClaim().work;
    nameWork += NameWork(node, mesh->GetClaim());
    text += ListedSize(node);
    if (mesh->GetClaim().memory > mesh->GetMemoryLimit()) {
      excess = KFbxMeshExcess().what();
    } else if (work > mostWork) {
      excess = "its nodes repeat large meshes too often";
    } else if (nameWork > mostWork) {
      excess = "its meshes have names that are too long for a file of this size";
    } else if (text > allowance / 2) {
      excess = "its meshes have too many materials for a file of this size";
    }
  });
  return excess;
}

}  // namespace scene
