// SPDX-License-Identifier: MIT
#include "mesh/claims/weigh_claims.h"

#include <algorithm>
#include <unordered_map>

#include "mesh/claims/mesh_cost.h"

namespace ts3d {
namespace {

using scene::KFbxMesh;
using scene::KFbxNode;

constexpr size_t kUsualName = 1024;

/// Text that a name becomes in all lists of the document.
uint64_t ListedSize(const KFbxNode& node) {
  return static_cast<uint64_t>(std::max(node.GetMaterialCount(), 1)) * (4 * node.GetName().size() + 200);
}

/// What a name costs where it is repeated for each vertex, as the lines for lost texture coordinates do.
uint64_t NameWork(const KFbxNode& node, uint64_t work) {
  constexpr uint64_t kVertexWork = 32;
  const uint64_t length = node.GetName().size();
  if (length <= kUsualName) return 0;
  return std::min(work / kVertexWork, UINT64_MAX / 2 / length) * length;
}

/// Text of the names that the lines for lost influences repeat, one for each cluster.
uint64_t LinkNames(const KFbxMesh& mesh) {
  uint64_t size = 0;
  for (int s = 0; s < mesh.GetSkinCount(); ++s) {
    const scene::KFbxSkin& skin = *mesh.GetSkin(s);
    for (int c = 0; c < skin.GetClusterCount(); ++c) {
      const KFbxNode* link = skin.GetCluster(c)->GetLink();
      if (link && link->GetName().size() > kUsualName) size += link->GetName().size();
    }
  }
  return size;
}

/// What the nodes so far come to, a mesh for each of them: it may serve thousands, and is converted for each.
class Scales {
 public:
  /// Why the file is refused when `node` is added, which has a mesh; empty when it is not.
  std::string Add(KFbxNode& node) {
    KFbxMesh& mesh = *node.GetMesh();
    const Weight& weight = Weigh(mesh);
    work_ += weight.cost.work;
    nameWork_ += NameWork(node, weight.cost.work);
    linkNames_ += weight.linkNames;
    text_ += ListedSize(node);
    const uint64_t fileSize = mesh.GetRecord().Tree().FileSize();
    const uint64_t mostWork = 512 * fileSize + (uint64_t{2} << 30);
    // Lines are long work: a host gets each, and may keep it.
    const uint64_t mostLinkNames = 16 * fileSize + (uint64_t{64} << 20);
    if (weight.cost.memory > MemoryLimit(mesh)) return scene::KFbxMeshExcess().what();
    if (work_ > mostWork) return "its nodes repeat large meshes too often";
    if (nameWork_ > mostWork) return "its meshes have names that are too long for a file of this size";
    if (linkNames_ > mostLinkNames) return "its bones have names that are too long for a file of this size";
    if (text_ > mesh.GetRecord().Tree().MemoryAllowance() / 2)
      return "its meshes have too many materials for a file of this size";
    return {};
  }

 private:
  struct Weight {
    MeshCost cost;
    uint64_t linkNames = 0;
  };

  const Weight& Weigh(KFbxMesh& mesh) {
    const auto [known, isNew] = weights_.try_emplace(&mesh);
    if (isNew) {
      known->second = {CostOf(mesh.GetClaim()), LinkNames(mesh)};
      const uint64_t limit = MemoryLimit(mesh);
      mesh.SetMemoryRoom(limit - std::min(limit, known->second.cost.memory));
    }
    return known->second;
  }

  std::unordered_map<const KFbxMesh*, Weight> weights_;
  uint64_t work_ = 0, nameWork_ = 0, linkNames_ = 0, text_ = 0;
};

}  // namespace

std::string WeighClaims(scene::KFbxScene& scene) {
  Scales scales;
  std::string excess;
  scene.ForEach<KFbxNode>([&](KFbxNode& node) {
    const KFbxMesh* mesh = node.GetParent() ? node.GetMesh() : nullptr;
    // The meshes that a plug-in makes by itself have no record.
    if (mesh && mesh->GetRecord() && excess.empty()) excess = scales.Add(node);
  });
  return excess;
}

}  // namespace ts3d
