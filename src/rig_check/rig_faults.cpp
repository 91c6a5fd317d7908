// SPDX-License-Identifier: MIT
#include "rig_check/rig_faults.h"

#include <algorithm>
#include <cmath>

#include "core/stray_points.h"
#include "rig_check/bone_places.h"
#include "rig_check/choose_repairs.h"
#include "rig_check/finding_kinds.h"
#include "scene/model/mesh.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

using Point = std::array<float, 3>;

bool IsFinite(const Point& p) { return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]); }

void TellStrayPoints(const std::vector<MeshFacts>& meshes, RigReport& report) {
  std::vector<PartPoints> parts;
  for (const MeshFacts& mesh : meshes) parts.emplace_back(mesh.points);
  const std::optional<Bulk> bulk = FindBulk(parts);
  if (!bulk) return;
  for (const MeshFacts& mesh : meshes) {
    size_t count = 0;
    double farthest = 0.0;
    for (const Point& point : mesh.points) {
      const double distance = bulk->DistanceOf(point);
      count += distance > bulk->radius;
      farthest = std::max(farthest, distance);
    }
    if (count == 0) continue;
    report.Add(findings::kStrayPoints, mesh.node->GetName(),
               {std::to_string(count), ShortNumber(farthest), ShortNumber(bulk->radius)});
  }
}

/// Trying takes time, so that it is left to models with a fault.
void TellRepairs(const ModelSource& model, RigReport& report) {
  const bool isFaulty =
      std::any_of(report.findings.begin(), report.findings.end(), [](const Finding& finding) {
        return finding.severity == Severity::Warning || finding.code == findings::kOtherBindPose.code;
      });
  if (!isFaulty) return;
  for (const NeededRepair& repair : ChooseRepairs(model).needed) {
    report.Add(findings::kRepairHelps, {}, {repair.option, repair.reason});
  }
}

}  // namespace

bool MeshFacts::Follows(int32_t bone) const {
  return bone >= 0 && static_cast<size_t>(bone) < follows.size() && follows[static_cast<size_t>(bone)];
}

bool MeshFacts::FollowsAny() const { return std::find(follows.begin(), follows.end(), 1) != follows.end(); }

bool MeshFacts::IsPosed(const SkeletonState& skeleton) const {
  return (pose && pose->Find(node) >= 0) || BoundMatrix(*node, skeleton);
}

void RigFaults::Take(const ConvertedMesh& mesh, const SkeletonState& skeleton) {
  MeshFacts facts{&mesh.node, mesh.files, skeleton.bindPose, {}, {}, {}};
  facts.follows.resize(static_cast<size_t>(skeleton.bones.BoneCount()));
  const size_t pointCount = mesh.data.points.size() / 3;
  facts.points.reserve(pointCount);
  for (size_t i = 0; i < std::min(pointCount, mesh.data.records.size()); ++i) {
    if (mesh.data.records[i].influenceList == -1) continue;
    for (const BoneWeight& influence : mesh.data.influences.Of(static_cast<int32_t>(i))) {
      if (influence.weight != 0.0f) facts.follows[static_cast<size_t>(influence.bone)] = 1;
    }
    Point point{};
    for (size_t axis = 0; axis < 3; ++axis) point[axis] = static_cast<float>(mesh.data.points[3 * i + axis]);
    if (!IsFinite(point)) continue;
    facts.points.push_back(point);
    facts.box.Add(base::ToVector(point));
  }
  meshes_.push_back(std::move(facts));
}

void RigFaults::Tell(const ModelSource& model, SkeletonState& skeleton, RigReport& report) const {
  TellFileFaults(model, report);
  TellChoices(model, report);
  const bool isHidden = TellLostBones(model, skeleton, meshes_, report);
  if (skeleton.hasExtractedBones) {
    TellSkinPlaces(model, skeleton, meshes_, report);
    TellRootScale(model.settings.repairs, skeleton, meshes_, report);
  } else if (!isHidden) {
    TellStaticMeshes(model, skeleton, meshes_, report);
  }
  TellShiftedParts(model, meshes_, report);
  TellStrayPoints(meshes_, report);
  TellRepairs(model, report);
}

double ModelSize(const std::vector<MeshFacts>& meshes, const SkeletonState& skeleton) {
  base::Box box;
  for (const MeshFacts& mesh : meshes) {
    if (mesh.box.IsEmpty()) continue;
    box.Add(mesh.box.low);
    box.Add(mesh.box.high);
  }
  for (size_t id = 0; id < skeleton.boneNodes.size(); ++id) {
    const scene::KFbxVector4 place =
        StoredPlace(*skeleton.bones.FindById(static_cast<int32_t>(id)), skeleton).GetT();
    box.Add({place[0], place[1], place[2]});
  }
  return box.LargestSide();
}

}  // namespace ts3d
