// SPDX-License-Identifier: MIT
#include "skeleton/rigid_meshes.h"

#include <algorithm>
#include <numeric>

namespace ts3d {

bool HasSkin(const scene::KFbxMesh& mesh) {
  for (int s = 0; s < mesh.GetSkinCount(); ++s) {
    if (mesh.GetSkin(s)->GetClusterCount() > 0) return true;
  }
  return false;
}

int32_t BoneAbove(const scene::KFbxNode& node, const SkeletonState& skeleton) {
  for (const scene::KFbxNode* above = node.GetParent(); above; above = above->GetParent()) {
    if (const auto bone = skeleton.boneOf.find(above); bone != skeleton.boneOf.end()) return bone->second;
  }
  return -1;
}

InfluenceTable WholeWeightOnBoneAbove(const scene::KFbxNode& node, SkeletonState& skeleton) {
  const int32_t bone = BoneAbove(node, skeleton);
  if (bone < 0) return {};
  skeleton.bones.MarkById(bone);
  const auto count = static_cast<size_t>(node.GetMesh()->GetControlPointsCount());
  scene::FbxArray<BoneWeight> weights;
  std::fill_n(weights.Allocate(count), count, BoneWeight{bone, 1.0f});
  std::vector<uint32_t> rowEnds(count);
  std::iota(rowEnds.begin(), rowEnds.end(), 1u);
  return {std::move(rowEnds), std::move(weights)};
}

}  // namespace ts3d
