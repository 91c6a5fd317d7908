// SPDX-License-Identifier: MIT
#include "scene/assemble/scene_builder.h"

namespace scene {

void SceneBuilder::CreatePoses() {
  for (const FbxObject& object : table_.Objects()) {
    if (object.kind != ObjectKind::Pose) continue;
    const std::string_view type =
        object.subType.empty() ? object.record.Child("Type").Text(0) : object.subType;
    KFbxPose& pose = scene_.Create<KFbxPose>(object.name, type == "BindPose");
    for (const RecordRef entry : object.record) {
      uint32_t index = 0;
      if (entry.Name() != "PoseNode" || !table_.Find(entry.Child("Node"), 0, index)) continue;
      const KFbxNode* node = Made<KFbxNode>(index);
      const std::optional<KFbxXMatrix> matrix = ReadMatrix(entry.Child("Matrix"));
      if (node && matrix) pose.Add(*node, *matrix, entry.Child("Local").Integer(0, 0) != 0);
    }
    scene_.AddPose(pose);
  }
}

}  // namespace scene
