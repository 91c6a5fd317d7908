// SPDX-License-Identifier: MIT
#include "scene/assemble/check_claims.h"

#include <algorithm>
#include <unordered_map>

#include "scene/model/mesh.h"
#include "scene/model/skin.h"

namespace scene {
namespace {

constexpr size_t kUsualName = 1024;

/// Text that a name becomes in all lists of the document.
uint64_t ListedSize(const KFbxNode& node) {
  return static_cast<uint64_t>(std::max(node.GetMaterialCount(), 1)) * (4 * node.GetName().size() + 200);
}

/// What a name costs where it is repeated for each vertex, as the lines for lost texture coordinates do.
uint64_t NameWork(const KFbxNode& node, const KFbxMeshClaim& claim) {
  constexpr uint64_t kVertexWork = 32;
  const uint64_t length = node.GetName().size();
  if (length <= kUsualName) return 0;
  return std::min(claim.work / kVertexWork, UINT64_MAX / 2 / length) * length;
}

/// Text of the names that the lines for lost influences repeat, one for each cluster.
uint64_t LinkNames(const KFbxMesh& mesh) {
  uint64_t size = 0;
  for (int s = 0; s < mesh.GetSkinCount(); ++s) {
    const KFbxSkin& skin = *mesh.GetSkin(s);
    for (int c = 0; c < skin.GetClusterCount(); ++c) {
      const KFbxNode* link = skin.GetCluster(c)->GetLink();
      if (link && link->GetName().size() > kUsualName) size += link->GetName().size();
    }
  }
  return size;
}

}  // namespace

KString FindExcessiveClaim(const KFbxScene& scene, uint64_t fileSize, uint64_t allowance) {
  // A mesh may serve thousands of nodes and is converted for each of them.
  const uint64_t mostWork = 512 * fileSize + (uint64_t{2} << 30);
  // Lines are long work: a host gets each, and may keep it.
  const uint64_t mostLinkNames = 16 * fileSize + (uint64_t{64} << 20);
  uint64_t work = 0, nameWork = 0, linkNames = 0, text = 0;
  std::unordered_map<const KFbxMesh*, uint64_t> linkNamesOf;
  KString excess;
  scene.ForEach<KFbxNode>([&](const KFbxNode& node) {
    const KFbxMesh* mesh = node.GetParent() ? node.GetMesh() : nullptr;
    if (!mesh || !excess.empty()) return;
    work += mesh->GetClaim().work;
    nameWork += NameWork(node, mesh->GetClaim());
    const auto [known, isNew] = linkNamesOf.try_emplace(mesh, 0);
    if (isNew) known->second = LinkNames(*mesh);
    linkNames += known->second;
    text += ListedSize(node);
    if (mesh->GetClaim().memory > mesh->GetMemoryLimit()) {
      excess = KFbxMeshExcess().what();
    } else if (work > mostWork) {
      excess = "its nodes repeat large meshes too often";
    } else if (nameWork > mostWork) {
      excess = "its meshes have names that are too long for a file of this size";
    } else if (linkNames > mostLinkNames) {
      excess = "its bones have names that are too long for a file of this size";
    } else if (text > allowance / 2) {
      excess = "its meshes have too many materials for a file of this size";
    }
  });
  return excess;
}

}  // namespace scene
