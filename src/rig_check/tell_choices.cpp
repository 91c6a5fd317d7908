// SPDX-License-Identifier: MIT
#include "config/actor_config.h"
#include "core/mesh_filter.h"
#include "core/names.h"
#include "core/similar_names.h"
#include "mesh/scene_walk.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_faults.h"
#include "scene/model/mesh.h"
#include "scene/model/scene.h"

namespace ts3d {
namespace {

void TellMeshes(const scene::KFbxNode& node, const ModelSource& model, RigReport& report) {
  const std::string name = SanitizeMeshName(node.GetName());
  if (skipThisMesh(name, model.Filter())) {
    if (!IsExcluded(name, model.Filter())) report.Add(findings::kHeadPart, node.GetName());
  } else if (node.IsHidden() && node.GetMesh()->GetControlPointsCount() > 0) {
    report.Add(findings::kHiddenMesh, node.GetName());
  }
}

/// "\"a\", \"b\" and 3 more".
std::string FirstNames(std::vector<std::string> names) {
  constexpr size_t kMost = 3;
  const size_t count = names.size();
  if (count > kMost) names.resize(kMost);
  return QuotedNames(names) + (count > kMost ? " and " + std::to_string(count - kMost) + " more" : "");
}

}  // namespace

void TellChoices(const ModelSource& model, RigReport& report) {
  if (model.actorType != ActorType::None) report.Add(findings::kActor, {}, {ObjectId(model.actorType, {})});
  ForEachMeshNode(model.Root(), [&](const scene::KFbxNode& node) { TellMeshes(node, model, report); });
  std::vector<std::string> motions;
  for (const scene::KString& motion : model.scene.GetMotions()) motions.emplace_back(motion);
  if (!motions.empty()) report.Add(findings::kMotion, {}, {FirstNames(std::move(motions))});
}

}  // namespace ts3d
