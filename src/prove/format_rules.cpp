// SPDX-License-Identifier: MIT
#include "prove/format_rules.h"

#include <algorithm>
#include <cmath>

#include "core/names.h"

namespace prove {
namespace {

/// The matrix of a node in the bind poses that count by the rules; null when none of these has it.
/// @param first  the one that is asked before all others; may be null
const scene::KFbxXMatrix* RuleMatrix(const RigNode& entry, const ModelRig& rig,
                                     const scene::KFbxPose* first = nullptr) {
  if (const int index = first ? first->Find(entry.node) : -1; index >= 0) return &first->GetMatrix(index);
  if (rig.rulePoses.empty()) return nullptr;
  if (const int index = rig.bindPose->Find(entry.node); index >= 0) return &rig.bindPose->GetMatrix(index);
  const auto other = rig.poseOf.find(entry.node);
  if (rig.rulePoses.size() > 1 && other != rig.poseOf.end())
    return &other->second->GetMatrix(other->second->Find(entry.node));
  return nullptr;
}

/// Bind poses that are tried for one mesh.
constexpr size_t kMostPlaces = 8;

/// Lengths of the axes; all negative when mirrored.
Point ScaleOf(const Affine& m) {
  const double sign = m.Determinant() < 0.0 ? -1.0 : 1.0;
  Point scale;
  for (size_t c = 0; c < 3; ++c) scale[c] = sign * std::hypot(m.rows[0][c], m.rows[1][c], m.rows[2][c]);
  return scale;
}

/// `m` without shear.
Affine WithoutShear(const Affine& m) {
  const Point scale = ScaleOf(m);
  Affine out = m.Frame();
  for (auto& row : out.rows) {
    for (size_t c = 0; c < 3; ++c) row[c] *= scale[c];
  }
  return out;
}

Affine PresentLocal(const RigNode& entry, const ModelRig& rig) {
  if (entry.parent < 0) return entry.present;
  return rig.nodes[static_cast<size_t>(entry.parent)].present.Inverse() * entry.present;
}

/// A bone's transform relative to its parent by the rules, before the root's scale.
Affine LocalByRule(const RigNode& entry, bool isTop, const ModelRig& rig) {
  const scene::KFbxXMatrix* matrix = RuleMatrix(entry, rig);
  const scene::KFbxXMatrix* above =
      entry.parent < 0 ? nullptr : RuleMatrix(rig.nodes[static_cast<size_t>(entry.parent)], rig);
  if (isTop) {
    // A root that only the bind pose lacks is not turned up.
    const bool isTurned = matrix || rig.rulePoses.empty();
    const Affine m = matrix ? Affine::From(*matrix) : entry.present;
    return isTurned ? rig.actorTurn * m : m;
  }
  if (!matrix) return WithoutShear(PresentLocal(entry, rig));
  return above ? Affine::From(*above).Inverse() * Affine::From(*matrix) : Affine::From(*matrix);
}

/// Where the rules have every node at bind time.
/// @param pose  the bind pose that is asked before all others
std::vector<Affine> WorldsByRule(const ModelRig& rig, const scene::KFbxPose* pose) {
  std::vector<Affine> worlds;
  // The next ancestor that is bound, or -1. Those of the first bone do not count below it.
  std::vector<int32_t> bound;
  const int32_t first = rig.nodeOf.empty() ? -1 : rig.nodeOf.front();
  for (size_t i = 0; i < rig.nodes.size(); ++i) {
    const RigNode& entry = rig.nodes[i];
    if (const scene::KFbxXMatrix* matrix = RuleMatrix(entry, rig, pose)) {
      bound.push_back(static_cast<int32_t>(i));
      worlds.push_back(Affine::From(*matrix));
      continue;
    }
    const bool stops = entry.parent < 0 || static_cast<int32_t>(i) == first;
    bound.push_back(stops ? -1 : bound[static_cast<size_t>(entry.parent)]);
    if (bound.back() < 0) {
      worlds.push_back(entry.present);
    } else {
      const auto above = static_cast<size_t>(bound.back());
      worlds.push_back(worlds[above] * rig.nodes[above].present.Inverse() * entry.present);
    }
  }
  return worlds;
}

}  // namespace

bool IsBoundByRule(const RigNode& node, const ModelRig& rig) { return RuleMatrix(node, rig) != nullptr; }

std::vector<RuleBone> BonesByRule(const actor::Skeleton& skeleton, const ModelRig& rig) {
  std::vector<RuleBone> bones;
  Point rootScale{1, 1, 1};
  for (size_t i = 0; i < skeleton.bones.size(); ++i) {
    const actor::Bone& bone = skeleton.bones[i];
    if (rig.nodeOf[i] < 0) {
      bones.push_back({StoredFrame(bone.rotation, bone.translation),
                       StoredFrame(bone.boneSpaceRotation, bone.boneSpaceTranslation)});
      continue;
    }
    const RigNode& entry = rig.nodes[static_cast<size_t>(rig.nodeOf[i])];
    Affine local = LocalByRule(entry, bone.parent < 0, rig);
    if (bone.parent < 0) {
      const scene::KFbxXMatrix* matrix = RuleMatrix(entry, rig);
      rootScale = ScaleOf(matrix ? Affine::From(*matrix) : entry.present);
    }
    for (size_t k = 0; k < 3; ++k) local.rows[k][3] *= rootScale[k];
    Affine space = local.Inverse();
    if (bone.parent >= 0) space = space * bones[static_cast<size_t>(bone.parent)].space;
    bones.push_back({local.Frame(), space.Frame()});
  }
  return bones;
}

std::vector<std::vector<Point>> PlacePointsByRule(const ModelMesh& mesh, const ModelRig& rig) {
  const bool hasBones =
      std::any_of(rig.nodeOf.begin(), rig.nodeOf.end(), [](int32_t node) { return node >= 0; });
  const RigNode& node = rig.nodes[static_cast<size_t>(mesh.node)];
  std::vector<std::vector<Point>> places;
  if (hasBones) {
    for (const scene::KFbxPose* pose : rig.rulePoses) {
      const bool counts = places.empty() ? IsBoundByRule(node, rig) : pose->Find(node.node) >= 0;
      if (counts && places.size() < kMostPlaces) Deform(mesh, WorldsByRule(rig, pose), places.emplace_back());
    }
  }
  if (places.empty()) {
    const std::vector<Point>& modelled = mesh.modelled.empty() ? mesh.points : mesh.modelled;
    std::vector<Point>& points = places.emplace_back();
    for (const Point& point : modelled) points.push_back(mesh.geometric.Apply(point));
  }
  for (std::vector<Point>& points : places) {
    for (Point& point : points) point = rig.actorTurn.Apply(point);
  }
  return places;
}

int32_t BoneByRule(const scene::KFbxNode& node, const actor::Skeleton& skeleton) {
  const auto find = [&](const std::string& name) {
    const auto found = std::find_if(skeleton.bones.begin(), skeleton.bones.end(),
                                    [&](const actor::Bone& bone) { return bone.name == name; });
    return found == skeleton.bones.end() ? -1 : static_cast<int32_t>(found - skeleton.bones.begin());
  };
  std::string name = ts3d::SanitizeMeshName(node.GetName());
  if (name.empty()) return -1;
  const int32_t bone = find(name);
  if (bone >= 0 || name.rfind(':') == std::string::npos) return bone;
  return find(name.substr(name.rfind(':') + 1));
}

}  // namespace prove
