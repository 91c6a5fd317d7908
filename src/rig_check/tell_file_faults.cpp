// SPDX-License-Identifier: MIT
#include "config/mesh_list.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_faults.h"
#include "scene/model/scene.h"

namespace ts3d {
namespace {

void TellReading(const scene::KFbxScene& scene, RigReport& report) {
  std::string remarks;
  for (const scene::KString& remark : scene.GetRemarks()) remarks += (remarks.empty() ? "" : "; ") + remark;
  if (!remarks.empty()) report.Add(findings::kReadAs, {}, {remarks});
  bool isAvatar = false;
  scene.ForEach<scene::KFbxNode>(
      [&](const scene::KFbxNode& node) { isAvatar |= !node.GetHumanBone().empty(); });
  if (isAvatar) report.Add(findings::kAvatar);
  if (!scene.GetLicence().empty()) report.Add(findings::kLicence, {}, {scene.GetLicence()});
}

}  // namespace

void TellFileFaults(const ModelSource& model, RigReport& report) {
  if (model.scene.HasDecimalCommas()) report.Add(findings::kDecimalCommas);
  TellReading(model.scene, report);
  if (!MeshList(model.Root()).IsEmpty()) return;
  size_t bones = 0;
  model.scene.ForEach<scene::KFbxNode>([&](const scene::KFbxNode& node) { bones += node.IsSkeleton(); });
  if (bones > 0) {
    report.Add(findings::kMotionOnly, {}, {std::to_string(bones) + (bones == 1 ? " bone" : " bones")});
  } else {
    report.Add(findings::kNoMesh);
  }
}

}  // namespace ts3d
