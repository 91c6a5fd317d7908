// SPDX-License-Identifier: MIT
#include "skeleton/bind_from_skin.h"

#include <unordered_map>
#include <vector>

#include "scene/model/mesh.h"
#include "scene/model/walk_nodes.h"

namespace ts3d {
namespace {

using scene::KFbxCluster;
using scene::KFbxMesh;
using scene::KFbxNode;
using scene::KFbxXMatrix;

using PlaceOfNode = std::unordered_map<const KFbxNode*, KFbxXMatrix>;

/// A node on the way down the tree.
struct Step {
  const KFbxNode* node;
  KFbxXMatrix parentPlace;
  bool followsSkin;  ///< some node above stands where a skin says
};

template <typename Visit>
void ForEachCluster(const KFbxNode& node, const Visit& visit) {
  const KFbxMesh* mesh = node.GetMesh();
  for (int s = 0; mesh && s < mesh->GetSkinCount(); ++s) {
    const scene::KFbxSkin& skin = *mesh->GetSkin(s);
    for (int c = 0; c < skin.GetClusterCount(); ++c) visit(*skin.GetCluster(c));
  }
}

/// Where skins say that nodes were. The first skin to say so counts; clusters without weights come last.
PlaceOfNode PlacesOfSkins(const KFbxNode& root) {
  PlaceOfNode places;
  for (const bool weighted : {true, false}) {
    scene::WalkNodes(root, [&](const KFbxNode& node) {
      ForEachCluster(node, [&](const KFbxCluster& cluster) {
        if (!cluster.GetLink() || (cluster.GetClaim() > 0) != weighted) return;
        if (const auto link = cluster.GetTransformLinkMatrix()) places.try_emplace(cluster.GetLink(), *link);
        if (const auto mesh = cluster.GetTransformMatrix()) places.try_emplace(&node, *mesh);
      });
      return scene::Below::Visit;
    });
  }
  return places;
}

PlaceOfNode PlacesOfBindPoses(const scene::KFbxScene& scene) {
  PlaceOfNode places;
  for (int i = 0; i < scene.GetPoseCount(); ++i) {
    const scene::KFbxPose& pose = *scene.GetPose(i);
    for (int k = 0; pose.IsBindPose() && k < pose.GetCount(); ++k) {
      if (!pose.IsLocalMatrix(k)) places.try_emplace(pose.GetNode(k), pose.GetMatrix(k));
    }
  }
  return places;
}

const KFbxXMatrix* Find(const PlaceOfNode& places, const KFbxNode* node) {
  const auto found = places.find(node);
  return found == places.end() ? nullptr : &found->second;
}

/// Where `step.node` goes when no skin says where it was.
KFbxXMatrix PlaceBeside(const Step& step, const PlaceOfNode& posed) {
  const KFbxNode* parent = step.node->GetParent();
  const KFbxXMatrix *own = Find(posed, step.node), *above = Find(posed, parent);
  if (own && !step.followsSkin) return *own;
  if (own && above) return step.parentPlace * above->Inverse() * *own;
  const KFbxXMatrix& now = step.node->GetGlobalFromDefaultTake();
  return parent ? step.parentPlace * parent->GetGlobalFromDefaultTake().Inverse() * now : now;
}

}  // namespace

std::shared_ptr<const scene::KFbxPose> BindPoseOfSkins(const scene::KFbxScene& scene) {
  const PlaceOfNode bound = PlacesOfSkins(*scene.GetRootNode()), posed = PlacesOfBindPoses(scene);
  if (bound.empty() && posed.empty()) return nullptr;
  auto pose = std::make_shared<scene::KFbxPose>("", true);
  std::vector<Step> pending{{scene.GetRootNode(), {}, false}};
  while (!pending.empty()) {
    const Step step = pending.back();
    pending.pop_back();
    const KFbxXMatrix* known = Find(bound, step.node);
    const KFbxXMatrix place = known ? *known : PlaceBeside(step, posed);
    pose->Add(*step.node, place, false);
    for (int i = step.node->GetChildCount(); i-- > 0;) {
      pending.push_back({step.node->GetChild(i), place, known || step.followsSkin});
    }
  }
  return pose;
}

}  // namespace ts3d
