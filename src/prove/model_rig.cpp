// SPDX-License-Identifier: MIT
#include "prove/model_rig.h"

#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <utility>

#include "core/names.h"
#include "scene/model/mesh.h"
#include "scene/model/walk_nodes.h"

namespace prove {
namespace {

using scene::KFbxNode;
using scene::KFbxPose;
using Links = std::unordered_map<const KFbxNode*, Affine>;

/// Where the clusters say that their links stood; the first one of a link counts.
Links ReadLinks(const scene::KFbxScene& scene) {
  Links links;
  scene::WalkNodes(*scene.GetRootNode(), [&](const KFbxNode& node) {
    const scene::KFbxMesh* mesh = node.GetMesh();
    for (int s = 0; mesh && s < mesh->GetSkinCount(); ++s) {
      for (int c = 0; c < mesh->GetSkin(s)->GetClusterCount(); ++c) {
        const scene::KFbxCluster& cluster = *mesh->GetSkin(s)->GetCluster(c);
        const auto matrix = cluster.GetTransformLinkMatrix();
        if (cluster.GetLink() && matrix) links.emplace(cluster.GetLink(), Affine::From(*matrix));
      }
    }
    return scene::Below::Visit;
  });
  return links;
}

void ChooseBindPose(const scene::KFbxScene& scene, ModelRig& rig) {
  std::vector<const KFbxPose*> poses;
  int most = 0, withMost = 0;
  for (int i = 0; i < scene.GetPoseCount(); ++i) {
    const KFbxPose* pose = scene.GetPose(i);
    if (!pose->IsBindPose() || pose->GetCount() == 0) continue;
    poses.push_back(pose);
    withMost = pose->GetCount() > most ? 1 : withMost + (pose->GetCount() == most ? 1 : 0);
    if (pose->GetCount() > most) rig.bindPose = pose;
    most = std::max(most, pose->GetCount());
  }
  for (const KFbxPose* pose : poses) {
    for (int i = 0; i < pose->GetCount(); ++i) rig.poseOf.emplace(pose->GetNode(i), pose);
  }
  if (rig.bindPose) rig.rulePoses.push_back(rig.bindPose);
  // Only when the choice was not clear, the others count by the rules, too.
  if (withMost > 1) rig.rulePoses.insert(rig.rulePoses.end(), poses.begin(), poses.end());
}

/// The bind pose that has `node`: the main one before all others.
const KFbxPose* PoseOf(const KFbxNode& node, const ModelRig& rig) {
  if (rig.bindPose && rig.bindPose->Find(&node) >= 0) return rig.bindPose;
  const auto found = rig.poseOf.find(&node);
  return found == rig.poseOf.end() ? nullptr : found->second;
}

void AddNodes(const scene::KFbxScene& scene, ModelRig& rig) {
  scene::WalkNodes(*scene.GetRootNode(), [&](const KFbxNode& node) {
    if (&node == scene.GetRootNode()) return scene::Below::Visit;
    RigNode entry;
    entry.node = &node;
    entry.parent = rig.Find(node.GetParent());
    entry.present = Affine::From(node.GetGlobalFromDefaultTake());
    rig.numberOf.emplace(&node, static_cast<int32_t>(rig.nodes.size()));
    rig.nodes.push_back(entry);
    return scene::Below::Visit;
  });
}

/// Settles `bound` of every node.
void Bind(const Links& links, Stand stand, ModelRig& rig) {
  for (RigNode& entry : rig.nodes) {
    const RigNode* parent = entry.parent < 0 ? nullptr : &rig.nodes[static_cast<size_t>(entry.parent)];
    const KFbxPose* pose = stand == Stand::Now ? nullptr : PoseOf(*entry.node, rig);
    const auto link = links.find(entry.node);
    if (pose && !(stand == Stand::Skins && link != links.end())) {
      const int index = pose->Find(entry.node);
      entry.boundBy = pose == rig.bindPose ? BoundBy::Pose : BoundBy::OtherPose;
      entry.isLocalEntry = pose->IsLocalMatrix(index);
      entry.bound = Affine::From(pose->GetMatrix(index));
      if (entry.isLocalEntry && parent) entry.bound = parent->bound * entry.bound;
    } else if (link != links.end()) {
      entry.boundBy = BoundBy::Link;
      entry.bound = link->second;
    } else {
      entry.boundBy = BoundBy::Parent;
      entry.bound = parent ? parent->bound * parent->present.Inverse() * entry.present : entry.present;
    }
    const Affine local = parent ? parent->bound.Inverse() * entry.bound : entry.bound;
    entry.place = local.Frame();
    entry.stretch = entry.place.Inverse() * local;
  }
}

/// Finds the node of each bone: of its name, next below the node of its parent, the first that no other bone has.
void FindBones(const actor::Skeleton& skeleton, ModelRig& rig) {
  // By the skeleton node above, -1 for none, and the name.
  std::map<std::pair<int32_t, std::string>, std::deque<int32_t>> candidates;
  std::vector<int32_t> above;  // or the node itself, when it is one
  for (size_t i = 0; i < rig.nodes.size(); ++i) {
    const RigNode& entry = rig.nodes[i];
    above.push_back(entry.parent < 0 ? -1 : above[static_cast<size_t>(entry.parent)]);
    if (!entry.node->IsSkeleton()) continue;
    const auto number = static_cast<int32_t>(i);
    candidates[{above.back(), ts3d::SanitizeMeshName(entry.node->GetName())}].push_back(number);
    above.back() = number;
  }
  for (const actor::Bone& bone : skeleton.bones) {
    // Above bones of the model only stands what the converter made.
    const int32_t parent = bone.parent < 0 ? -1 : rig.nodeOf[static_cast<size_t>(bone.parent)];
    const auto found = candidates.find({parent, bone.name});
    rig.nodeOf.push_back(-1);
    if (found == candidates.end() || found->second.empty()) continue;
    rig.nodeOf.back() = found->second.front();
    found->second.pop_front();
    rig.nodes[static_cast<size_t>(rig.nodeOf.back())].bone = static_cast<int32_t>(rig.nodeOf.size()) - 1;
  }
}

/// Actors are turned up by a quarter about the side axis, around their first bone.
Affine ActorTurn(const ModelRig& rig) {
  for (const int32_t node : rig.nodeOf) {
    if (node < 0) continue;
    const Point at = rig.nodes[static_cast<size_t>(node)].bound.Origin();
    Affine quarter;
    quarter.rows = {{{1, 0, 0, 0}, {0, 0, -1, 0}, {0, 1, 0, 0}}};
    return Affine::Shift(at) * quarter * Affine::Shift({-at[0], -at[1], -at[2]});
  }
  return {};
}

/// How far the bones of the package stand from where the rig has them.
double DistanceOfBones(const actor::Skeleton& skeleton, const ModelRig& rig, bool isActor) {
  const Affine turn = isActor ? ActorTurn(rig) : Affine();
  double sum = 0.0;
  for (size_t i = 0; i < skeleton.bones.size(); ++i) {
    const actor::Bone& bone = skeleton.bones[i];
    if (rig.nodeOf[i] < 0) continue;
    const Affine rest = StoredFrame(bone.boneSpaceRotation, bone.boneSpaceTranslation).Inverse();
    const Affine bound = (turn * rig.nodes[static_cast<size_t>(rig.nodeOf[i])].bound).Frame();
    sum += Distance(rest.Origin(), bound.Origin()) + rest.TurnedFrom(bound);
  }
  return sum;
}

}  // namespace

int32_t ModelRig::Find(const KFbxNode* node) const {
  const auto found = numberOf.find(node);
  return found == numberOf.end() ? -1 : found->second;
}

Affine StoredFrame(const actor::Quaternion& rotation, const actor::Vector3& translation) {
  const auto& [x, y, z, w] = rotation;
  // The scalar part is negated in files.
  Affine frame = Affine::Of({x, y, z, -static_cast<double>(w)});
  for (size_t k = 0; k < 3; ++k) frame.rows[k][3] = translation[k];
  return frame;
}

ModelRig ReadModelRig(const scene::KFbxScene& scene, const actor::Skeleton& skeleton, bool isActor) {
  ModelRig rig;
  ChooseBindPose(scene, rig);
  AddNodes(scene, rig);
  FindBones(skeleton, rig);
  const Links links = ReadLinks(scene);
  const bool isStill = links.empty() && std::all_of(rig.nodeOf.begin(), rig.nodeOf.end(),
                                                    [](int32_t node) { return node < 0; });
  if (isStill) {
    rig.stand = Stand::Now;
    Bind(links, Stand::Now, rig);
    return rig;
  }
  Bind(links, Stand::Skins, rig);
  const double fromSkins = DistanceOfBones(skeleton, rig, isActor);
  Bind(links, Stand::BindPose, rig);
  // A package may have been converted in the pose of its skins. Rounding must not decide.
  if (fromSkins < 0.1 * DistanceOfBones(skeleton, rig, isActor)) {
    rig.stand = Stand::Skins;
    Bind(links, Stand::Skins, rig);
  }
  for (size_t i = 0; i < rig.nodes.size(); ++i) {
    if (rig.nodes[i].bone < 0 && links.contains(rig.nodes[i].node))
      rig.lostLinks.push_back(static_cast<int32_t>(i));
  }
  if (isActor) rig.actorTurn = ActorTurn(rig);
  return rig;
}

std::vector<Affine> TurnedWorlds(const ModelRig& rig, const std::vector<Turn>& turns) {
  std::vector<Affine> worlds;
  worlds.reserve(rig.nodes.size());
  for (const RigNode& entry : rig.nodes) {
    Affine local = entry.place;
    if (entry.bone >= 0) local = local * Affine::Of(turns[static_cast<size_t>(entry.bone)]);
    local = local * entry.stretch;
    worlds.push_back(entry.parent < 0 ? local : worlds[static_cast<size_t>(entry.parent)] * local);
  }
  // Children first: what is lost, too, stays where it is when what is above turns.
  for (size_t i = rig.lostLinks.size(); i-- > 0;) {
    const auto node = static_cast<size_t>(rig.lostLinks[i]);
    const RigNode& entry = rig.nodes[node];
    const Affine local = entry.place * Affine::Of(turns[rig.nodeOf.size() + i]) * entry.stretch;
    worlds[node] = entry.parent < 0 ? local : worlds[static_cast<size_t>(entry.parent)] * local;
  }
  return worlds;
}

std::vector<Affine> BoundWorlds(const ModelRig& rig) {
  std::vector<Affine> worlds;
  for (const RigNode& entry : rig.nodes) worlds.push_back(entry.bound);
  return worlds;
}

std::vector<Affine> PresentWorlds(const ModelRig& rig) {
  std::vector<Affine> worlds;
  for (const RigNode& entry : rig.nodes) worlds.push_back(entry.present);
  return worlds;
}

}  // namespace prove
