// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <map>

#include "rig_check/finding_kinds.h"
#include "rig_check/rig_check.h"
#include "scene/model/node.h"
#include "scene/model/skin.h"
#include "skeleton/rigid_meshes.h"

namespace ts3d {
namespace {

using scene::KFbxCluster;
using scene::KFbxMesh;
using scene::KFbxNode;
using scene::KFbxVector4;

/// What the weights of a mesh look like.
struct WeightCounts {
  std::vector<size_t> unweighted;  ///< control points with faces and without weight
  size_t used = 0;                 ///< control points with faces
  size_t many = 0, most = 0, bad = 0, uneven = 0;
};

WeightCounts CountWeights(const MeshData& data, size_t pointCount) {
  constexpr size_t kCommonMost = 4;
  constexpr double kUneven = 0.01;
  WeightCounts counts;
  for (size_t i = 0; i < pointCount; ++i) {
    if (data.records[i].influenceList == -1) continue;
    ++counts.used;
    const std::span<const BoneWeight> influences = data.influences.Of(static_cast<int32_t>(i));
    if (influences.empty()) {
      counts.unweighted.push_back(i);
      continue;
    }
    size_t bones = 0;
    double sum = 0.0;
    bool negative = false;
    for (const BoneWeight& influence : influences) {
      bones += influence.weight != 0.0f;
      sum += static_cast<double>(influence.weight);
      negative |= influence.weight < 0.0f;
    }
    counts.many += bones > kCommonMost;
    counts.most = std::max(counts.most, bones);
    const bool bad = negative || !(sum > 0.0) || !std::isfinite(sum);
    counts.bad += bad;
    counts.uneven += !bad && std::abs(sum - 1.0) > kUneven;
  }
  return counts;
}

/// Names of the bones that most of `points` are nearest to. Looks at some of the points only.
std::string NearestBones(const MeshData& data, const std::vector<size_t>& points, const RigCheck& check) {
  constexpr size_t kMostPoints = 100, kMostBones = 1000, kNamed = 3;
  const SkeletonState& skeleton = check.skeleton;
  std::vector<KFbxVector4> places;
  for (size_t id = 0; id < std::min(skeleton.boneNodes.size(), kMostBones); ++id) {
    places.push_back(skeleton.actorTurn.MultT(RestMatrix(*skeleton.boneNodes[id], skeleton).GetT()));
  }
  std::vector<std::pair<size_t, size_t>> votes(places.size());  // count, bone
  for (size_t id = 0; id < votes.size(); ++id) votes[id].second = id;
  const size_t step = points.size() / kMostPoints + 1;
  for (size_t i = 0; i < points.size(); i += step) {
    const double* p = &data.points[3 * points[i]];
    size_t nearest = 0;
    double smallest = HUGE_VAL;
    for (size_t id = 0; id < places.size(); ++id) {
      const double distance = (places[id] - KFbxVector4(p[0], p[1], p[2], places[id][3])).Length();
      if (distance >= smallest) continue;
      smallest = distance;
      nearest = id;
    }
    ++votes[nearest].first;
  }
  std::stable_sort(votes.begin(), votes.end(), [](auto& a, auto& b) { return a.first > b.first; });
  std::string names;
  for (size_t i = 0; i < std::min(votes.size(), kNamed) && votes[i].first > 0; ++i) {
    names += (i == 0 ? "\"" : ", \"") + skeleton.bones.FindById(static_cast<int32_t>(votes[i].second))->name +
             "\"";
  }
  return names;
}

void TellNoSkin(const KFbxNode& node, RigCheck& check) {
  const SkeletonState& skeleton = check.skeleton;
  if (!skeleton.hasExtractedBones) return;
  const std::string& root = skeleton.bones.FindById(0)->name;
  const KFbxNode* parent = node.GetParent();
  if (parent && parent->IsSkeleton() && parent != skeleton.boneNodes[0]) {
    check.report.Add(findings::kNoSkinOnBone, node.GetName(), {parent->GetName(), root});
  } else {
    check.report.Add(findings::kNoSkin, node.GetName(), {root});
  }
}

}  // namespace

void CheckSkins(const KFbxNode& node, const KFbxMesh& mesh, RigCheck& check) {
  if (!HasSkin(mesh)) return;
  const auto tell = [&](const FindingKind& kind, size_t count) {
    if (count > 0) check.report.Add(kind, node.GetName(), {std::to_string(count)});
  };
  size_t withoutBone = 0, outOfRange = 0;
  for (int s = 0; s < mesh.GetSkinCount(); ++s) {
    for (int c = 0; c < mesh.GetSkin(s)->GetClusterCount(); ++c) {
      const KFbxCluster& cluster = *mesh.GetSkin(s)->GetCluster(c);
      withoutBone += !cluster.GetLink() && cluster.GetControlPointIndicesCount() > 0;
      for (const int32_t index : cluster.GetControlPointIndices()) {
        outOfRange += index < 0 || index >= mesh.GetControlPointsCount();
      }
      if (cluster.GetLinkMode() == KFbxCluster::ELinkMode::eADDITIVE) tell(findings::kAdditive, 1);
      if (cluster.GetLinkMode() == KFbxCluster::ELinkMode::eTOTAL1) tell(findings::kTotalOne, 1);
    }
  }
  tell(findings::kNoLink, withoutBone);
  tell(findings::kBadIndices, outOfRange);
  if (mesh.GetSkinCount() > 1) tell(findings::kSeveralSkins, static_cast<size_t>(mesh.GetSkinCount()));
}

void CheckWeights(const KFbxNode& node, const MeshData& data, size_t pointCount, RigCheck& check) {
  if (!check.skeleton.hasExtractedBones) return;
  if (!HasSkin(*node.GetMesh())) {
    if (data.triangles.Count() > 0) TellNoSkin(node, check);
    return;
  }
  const WeightCounts counts = CountWeights(data, pointCount);
  const auto tell = [&](const FindingKind& kind, size_t count, std::string more = {}) {
    if (count == 0) return;
    std::vector<std::string> values{std::to_string(count)};
    if (!more.empty()) values.insert(values.end(), {std::to_string(counts.used), std::move(more)});
    check.report.Add(kind, node.GetName(), values);
  };
  if (!counts.unweighted.empty()) {
    tell(findings::kUnweighted, counts.unweighted.size(), NearestBones(data, counts.unweighted, check));
  }
  tell(findings::kManyInfluences, counts.many, std::to_string(counts.most));
  tell(findings::kBadWeights, counts.bad);
  tell(findings::kUnevenWeights, counts.uneven);
}

}  // namespace ts3d
