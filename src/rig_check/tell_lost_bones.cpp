// SPDX-License-Identifier: MIT
#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "rig_check/finding_kinds.h"
#include "rig_check/rig_faults.h"
#include "scene/model/mesh.h"
#include "skeleton/bone_influences.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

using scene::KFbxCluster;
using scene::KFbxNode;

/// Nodes that skins follow and that are not the bone of their name, with the number of their weights.
class StrayLinks {
 public:
  StrayLinks(const ModelSource& model, const SkeletonState& skeleton, const std::vector<MeshFacts>& meshes)
      : model_(model), skeleton_(skeleton) {
    for (const MeshFacts& mesh : meshes) {
      for (int s = 0; s < mesh.node->GetMesh()->GetSkinCount(); ++s) {
        const scene::KFbxSkin& skin = *mesh.node->GetMesh()->GetSkin(s);
        for (int c = 0; c < skin.GetClusterCount(); ++c) Add(*skin.GetCluster(c));
      }
    }
  }

  bool Has(const KFbxNode* node) const { return weights_.contains(node); }

  /// Tells of those that are no bones themselves.
  void Tell(const std::unordered_set<const KFbxNode*>& bones, RigReport& report) const {
    size_t lost = 0;
    for (const auto& [link, name] : lost_) lost += weights_.at(link);
    for (const auto& [link, name] : lost_) report.Add(findings::kUnknownLink, name, {std::to_string(lost)});
    for (const auto& [link, name] : borrowing_) {
      if (!bones.contains(link)) report.Add(findings::kNamesake, name);
    }
  }

 private:
  void Add(const KFbxCluster& cluster) {
    const KFbxNode* link = cluster.GetLink();
    if (!link) return;
    std::string name;
    const int32_t bone = BoneOfLink(*link, model_, skeleton_, name);
    const std::vector<const KFbxNode*>& bones = skeleton_.boneNodes;
    if (bone < 0 && name.empty()) return;
    if (bone >= 0 && static_cast<size_t>(bone) < bones.size() && bones[static_cast<size_t>(bone)] == link)
      return;
    const scene::FbxArray<double> weights = cluster.DecodePairs().weights;
    const auto count =
        static_cast<size_t>(std::count_if(weights.begin(), weights.end(), [](double w) { return w != 0.0; }));
    if (count == 0) return;
    const bool isNew = !Has(link);
    weights_[link] += count;
    if (isNew) (bone < 0 ? lost_ : borrowing_).emplace_back(link, name);
  }

  const ModelSource& model_;
  const SkeletonState& skeleton_;
  std::unordered_map<const KFbxNode*, size_t> weights_;
  std::vector<std::pair<const KFbxNode*, std::string>> lost_, borrowing_;
};

/// Looks for skeleton nodes that are no bones, and for the reason.
class LostBones {
 public:
  LostBones(const ModelSource& model, const SkeletonState& skeleton, const StrayLinks& links,
            const std::unordered_set<const KFbxNode*>& bones, RigReport& report)
      : skeleton_(skeleton),
        groupsHide_(!model.settings.repairs.openGroups),
        links_(links),
        bones_(bones),
        report_(report) {}

  /// @return whether groups hide the whole skeleton
  bool Tell(const KFbxNode& sceneRoot) {
    Walk(sceneRoot);
    for (const Lost& lost : lost_) {
      const std::string& name = lost.top->GetName();
      if (lost.isGroup) {
        const bool matters = lost.hasWeights || !skeleton_.hasExtractedBones;
        report_.Add(matters ? findings::kHiddenBones : findings::kIdleHiddenBones, name,
                    {std::to_string(lost.bones)});
      } else {
        report_.Add(lost.hasWeights ? findings::kSecondRoot : findings::kIdleSecondRoot, name,
                    {skeleton_.bones.Root().children[0]->name});
      }
    }
    return !skeleton_.hasExtractedBones && !lost_.empty();
  }

 private:
  static constexpr size_t kNone = static_cast<size_t>(-1);

  struct Lost {
    const KFbxNode* top;  ///< a group that hides bones, or a further root
    bool isGroup;
    size_t bones = 0;
    bool hasWeights = false;
  };
  struct Pending {
    const KFbxNode* node;
    const KFbxNode* group;  ///< the topmost node without attribute above
    size_t lost;            ///< what the node is lost with, or kNone
  };

  void Walk(const KFbxNode& sceneRoot) {
    std::vector<Pending> pending{{&sceneRoot, nullptr, kNone}};
    while (!pending.empty()) {
      Pending next = pending.back();
      pending.pop_back();
      if (next.node != &sceneRoot) Look(next);
      for (int i = next.node->GetChildCount(); i-- > 0;) {
        pending.push_back({next.node->GetChild(i), next.group, next.lost});
      }
    }
  }

  void Look(Pending& next) {
    if (groupsHide_ && !next.group && !next.node->GetNodeAttribute()) next.group = next.node;
    if (!next.node->IsSkeleton() || bones_.contains(next.node)) return;
    if (next.lost == kNone) {
      const KFbxNode* top = next.group ? next.group : next.node;
      // The walk is depth first: what is below one group comes in one go.
      if (lost_.empty() || lost_.back().top != top) lost_.push_back({top, next.group != nullptr});
      next.lost = lost_.size() - 1;
    }
    ++lost_[next.lost].bones;
    if (links_.Has(next.node)) lost_[next.lost].hasWeights = true;
  }

  const SkeletonState& skeleton_;
  bool groupsHide_;
  const StrayLinks& links_;
  const std::unordered_set<const KFbxNode*>& bones_;
  RigReport& report_;
  std::vector<Lost> lost_;
};

/// Bones of one name: those behind the first one lose what follows them.
void TellSameNames(const SkeletonState& skeleton, const StrayLinks& links, RigReport& report) {
  for (size_t id = 0; id < skeleton.boneNodes.size(); ++id) {
    const BoneNode& bone = *skeleton.bones.FindById(static_cast<int32_t>(id));
    if (!skeleton.boneNodes[id] || bone.name.empty() || skeleton.bones.FindByName(bone.name) == &bone)
      continue;
    report.Add(links.Has(skeleton.boneNodes[id]) ? findings::kSameBoneName : findings::kIdleSameBoneName,
               bone.name);
  }
}

}  // namespace

bool TellLostBones(const ModelSource& model, const SkeletonState& skeleton,
                   const std::vector<MeshFacts>& meshes, RigReport& report) {
  const std::unordered_set<const KFbxNode*> bones(skeleton.boneNodes.begin(), skeleton.boneNodes.end());
  const StrayLinks links(model, skeleton, meshes);
  const bool isHidden = LostBones(model, skeleton, links, bones, report).Tell(model.Root());
  TellSameNames(skeleton, links, report);
  if (skeleton.hasExtractedBones) links.Tell(bones, report);
  for (const scene::KFbxScene::LostJoint& lost : model.scene.GetLostJoints())
    report.Add(findings::kLostJoint, std::string(lost.name), {std::to_string(lost.points)});
  return isHidden;
}

}  // namespace ts3d
