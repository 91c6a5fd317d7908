// SPDX-License-Identifier: MIT
#include "prove/vertex_causes.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "prove/format_rules.h"
#include "prove/rounding.h"

namespace prove {
namespace {

using Weights = std::vector<std::pair<int32_t, double>>;

/// Adds up the weights of each bone and makes their sum 1; none when it has none.
Weights Normalised(const Weights& weights) {
  std::map<int32_t, double> byBone;
  double sum = 0.0;
  for (const auto& [bone, weight] : weights) {
    byBone[bone] += weight;
    sum += weight;
  }
  if (sum == 0.0) return {};
  Weights out;
  for (const auto& [bone, weight] : byBone) out.emplace_back(bone, weight / sum);
  return out;
}

bool IsSameBlend(const Weights& a, const Weights& b) {
  std::map<int32_t, double> difference;
  for (const auto& [bone, weight] : a) difference[bone] += weight;
  for (const auto& [bone, weight] : b) difference[bone] -= weight;
  return std::all_of(difference.begin(), difference.end(),
                     [](const auto& each) { return std::abs(each.second) <= kWeightRounding; });
}

/// Whether `stored` are `count` of the strongest of `all`, made to add up to 1.
bool AreStrongest(const Weights& stored, const Weights& all, size_t count) {
  if (count == 0 || all.size() <= count) return false;
  Weights kept;
  double weakest = 1.0, strongestLost = 0.0;
  for (const auto& each : all) {
    const bool isKept = std::any_of(stored.begin(), stored.end(), [&](const auto& other) {
      return other.first == each.first && other.second != 0.0;
    });
    if (isKept) kept.push_back(each);
    if (isKept) weakest = std::min(weakest, each.second);
    if (!isKept) strongestLost = std::max(strongestLost, each.second);
  }
  return kept.size() == count && strongestLost <= weakest + kWeightRounding &&
         IsSameBlend(stored, Normalised(kept));
}

bool IsNear(const Point& a, const Point& b, double diagonal) {
  return Distance(a, b) <= kPlaceRounding * diagonal + kRelativeRounding * Distance(b, {});
}

}  // namespace

VertexCauses::VertexCauses(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches,
                           size_t mesh, const std::vector<BoneFacts>& facts, const NodeFacts& nodes,
                           double diagonal, int mostInfluences)
    : skeleton_(skeleton),
      rig_(rig),
      mesh_(matches.meshes[mesh]),
      model_(matches.models[mesh_.model]),
      facts_(facts),
      nodes_(nodes),
      diagonal_(diagonal),
      mostInfluences_(static_cast<size_t>(mostInfluences)) {
  hasBones_ = std::any_of(rig.nodeOf.begin(), rig.nodeOf.end(), [](int32_t node) { return node >= 0; });
  Deform(model_, BoundWorlds(rig), places_);
  for (Point& place : places_) place = rig.actorTurn.Apply(place);
  rules_ = PlacePointsByRule(model_, rig);
  for (const Influence& influence : model_.influences) {
    ruleBones_.push_back(BoneByRule(*rig.nodes[static_cast<size_t>(influence.link)].node, skeleton));
  }
}

VertexCause VertexCauses::Of(size_t vertex, Pose::Kind kind) const {
  const size_t point = mesh_.points[vertex];
  VertexCause found = OfWeights(vertex, point);
  for (const VertexCause& next : {OfPlace(vertex, point), OfBones(vertex, kind), OfBinding(point, kind)}) {
    // What is our own fault must not hide behind a fault of the rig.
    if (found.cause == Cause::None || (IsOurs(next.cause) && !IsOurs(found.cause))) found = next;
  }
  if (found.cause == Cause::None && !hasBones_) found.cause = Cause::NoSkeleton;
  return found;
}

Weights VertexCauses::StoredWeights(const actor::Vertex& vertex) const {
  Weights weights;
  for (uint32_t i = 0; i < vertex.influenceCount; ++i) {
    const actor::Influence& influence = mesh_.file->influences[vertex.firstInfluence + i];
    weights.emplace_back(influence.bone, influence.weight);
  }
  return weights;
}

Weights VertexCauses::ModelWeights(size_t point) const {
  Weights weights;
  for (const Weight& each : model_.WeightsOf(point)) {
    const int32_t bone = rig_.nodes[static_cast<size_t>(model_.influences[each.influence].link)].bone;
    if (bone < 0) return {};
    weights.emplace_back(bone, each.weight);
  }
  Weights normalised = Normalised(weights);
  if (!normalised.empty()) return normalised;
  // Without weights, points follow the mesh's node.
  for (int32_t up = model_.node; up >= 0; up = rig_.nodes[static_cast<size_t>(up)].parent) {
    const int32_t bone = rig_.nodes[static_cast<size_t>(up)].bone;
    if (bone >= 0) return {{bone, 1.0}};
  }
  return {};
}

Weights VertexCauses::RuleWeights(size_t point) const {
  Weights weights;
  for (const Weight& each : model_.WeightsOf(point)) {
    if (const int32_t bone = ruleBones_[each.influence]; bone >= 0) weights.emplace_back(bone, each.weight);
  }
  return weights.empty() ? Weights{{0, 1.0}} : Normalised(weights);
}

VertexCause VertexCauses::OfWeights(size_t vertex, size_t point) const {
  if (model_.mode == ModelMesh::Mode::eADDITIVE) return {Cause::AdditiveSkin, -1};
  if (!hasBones_) {
    const auto weights = model_.WeightsOf(point);
    if (weights.empty()) return {};
    const int32_t link = model_.influences[weights.front().influence].link;
    return {WhyNoBone(link, skeleton_, rig_), link};
  }
  const Weights stored = StoredWeights(mesh_.file->vertices[vertex]);
  double sum = 0.0, size = 0.0;
  for (const Weight& each : model_.WeightsOf(point)) {
    sum += each.weight;
    size += std::abs(each.weight);
  }
  // Such weights cannot be made to add up to 1.
  const bool isNowhere =
      std::all_of(stored.begin(), stored.end(), [](const auto& w) { return w.second == 0.0; });
  if (isNowhere && size == 0.0 && !model_.isNamed.empty() && model_.isNamed[point])
    return {Cause::BadWeights, -1};
  if (IsSameBlend(stored, ModelWeights(point))) {
    const bool isPartial = model_.mode == ModelMesh::Mode::eTOTAL1 && std::abs(sum - 1.0) > kWeightRounding;
    return {isPartial && size > 0.0 ? Cause::TotalOneSkin : Cause::None, -1};
  }
  if (size > 0.0 && std::abs(sum) < 1e-3 * size) return {Cause::BadWeights, -1};
  if (AreStrongest(stored, RuleWeights(point), mostInfluences_)) return {Cause::MostInfluences, -1};
  if (!IsSameBlend(stored, RuleWeights(point))) return {Cause::WrongWeights, -1};
  if (size == 0.0) return {model_.influences.empty() ? Cause::NoSkin : Cause::UnweightedVertices, -1};
  for (const Weight& each : model_.WeightsOf(point)) {
    const int32_t link = model_.influences[each.influence].link;
    if (rig_.nodes[static_cast<size_t>(link)].bone < 0 ||
        rig_.nodes[static_cast<size_t>(link)].bone != ruleBones_[each.influence]) {
      return {WhyNoBone(link, skeleton_, rig_), link};
    }
  }
  return {Cause::WrongWeights, -1};
}

VertexCause VertexCauses::OfPlace(size_t vertex, size_t point) const {
  const actor::Vector3& stored = mesh_.file->vertices[vertex].position;
  const Point at{stored[0], stored[1], stored[2]};
  // Where the rules put a bone, they put what follows it.
  const Weights weights = StoredWeights(mesh_.file->vertices[vertex]);
  const bool followsRules = std::any_of(weights.begin(), weights.end(), [&](const auto& each) {
    return each.second != 0.0 && facts_[static_cast<size_t>(each.first)].space != Cause::None;
  });
  if (!followsRules && IsNear(at, places_[point], diagonal_)) return {};
  const auto rule = std::find_if(rules_.begin(), rules_.end(),
                                 [&](const auto& places) { return IsNear(at, places[point], diagonal_); });
  if (rule == rules_.end()) return {Cause::WrongPlace, -1};
  if (IsNear(at, places_[point], diagonal_)) return {};
  if (rule != rules_.begin()) return {Cause::SeveralBindPoses, -1};
  if (!hasBones_) return {Cause::NoSkeleton, -1};
  if (rig_.rulePoses.empty()) return {Cause::NoBindPose, -1};
  if (!IsBoundByRule(rig_.nodes[static_cast<size_t>(model_.node)], rig_)) return {Cause::MeshNotBound, -1};
  for (const Weight& each : model_.WeightsOf(point)) {
    const int32_t link = model_.influences[each.influence].link;
    const RigNode& node = rig_.nodes[static_cast<size_t>(link)];
    if (node.isLocalEntry) return {Cause::LocalMatrix, link};
    if (!IsBoundByRule(node, rig_)) return {Cause::BoneNotBound, link};
  }
  const bool isLocal = rig_.nodes[static_cast<size_t>(model_.node)].isLocalEntry;
  return isLocal ? VertexCause{Cause::LocalMatrix, model_.node} : VertexCause{Cause::SeveralBindPoses, -1};
}

VertexCause VertexCauses::OfBones(size_t vertex, Pose::Kind kind) const {
  VertexCause found;
  const auto take = [&](Cause cause, int32_t bone) {
    const bool isFirst = found.cause == Cause::None || (IsOurs(cause) && !IsOurs(found.cause));
    if (cause != Cause::None && isFirst) found = {cause, rig_.nodeOf[static_cast<size_t>(bone)]};
  };
  for (const auto& [bone, weight] : StoredWeights(mesh_.file->vertices[vertex])) {
    if (weight == 0.0) continue;
    // In the present pose every bone is put where it belongs. Else what is wrong above counts below, and
    // first.
    const BoneFacts& fact = facts_[static_cast<size_t>(bone)];
    if (kind != Pose::Kind::Present) take(fact.chain, fact.chainBone);
    take(fact.space, bone);
  }
  return found;
}

VertexCause VertexCauses::OfBinding(size_t point, Pose::Kind kind) const {
  const auto weights = model_.WeightsOf(point);
  const auto bindOf = [&](const Weight& each) {
    const Influence& influence = model_.influences[each.influence];
    return (rig_.nodes[static_cast<size_t>(influence.link)].bound * influence.bind)
        .Apply(model_.points[point]);
  };
  const bool isOneBinding = std::all_of(weights.begin(), weights.end(), [&](const Weight& each) {
    return IsNear(bindOf(each), bindOf(weights.front()), diagonal_);
  });
  const Point own =
      (rig_.nodes[static_cast<size_t>(model_.node)].bound * model_.geometric).Apply(model_.points[point]);
  for (const Weight& each : weights) {
    const int32_t link = model_.influences[each.influence].link;
    if (!isOneBinding && !IsNear(bindOf(each), own, diagonal_)) return {Cause::OtherBindPose, link};
    const auto at = static_cast<size_t>(link);
    if (kind == Pose::Kind::Present && nodes_.scaledNow[at] >= 0)
      return {Cause::ScaledNow, nodes_.scaledNow[at]};
    if (nodes_.uneven[at] >= 0) return {Cause::UnevenScale, nodes_.uneven[at]};
  }
  return {};
}

}  // namespace prove
