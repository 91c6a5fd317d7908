// SPDX-License-Identifier: MIT
#include "config/mesh_list.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_faults.h"
#include "scene/model/scene.h"

namespace ts3d {

void TellFileFaults(const ConversionJob& job, RigReport& report) {
  if (job.scene->HasDecimalCommas()) report.Add(findings::kDecimalCommas);
  if (!MeshList(*job.sceneRoot).IsEmpty()) return;
  size_t bones = 0;
  job.scene->ForEach<scene::KFbxNode>([&](const scene::KFbxNode& node) { bones += node.IsSkeleton(); });
  if (bones > 0) {
    report.Add(findings::kMotionOnly, {}, {std::to_string(bones)});
  } else {
    report.Add(findings::kNoMesh);
  }
}

}  // namespace ts3d
