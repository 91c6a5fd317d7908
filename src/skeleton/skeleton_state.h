// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "scene/math/matrix.h"
#include "skeleton/bone_node.h"

namespace scene {
class KFbxNode;
class KFbxPose;
}  // namespace scene

namespace ts3d {

/// What the skeleton of one conversion is and was made from. The bone tree outlives the scene: the final
/// settings read it. The pointers into the scene are valid as long as the scene is.
struct SkeletonState {
  BoneTree bones;
  std::vector<const scene::KFbxNode*> boneNodes;  ///< the scene's node of each bone, by identifier
  std::unordered_map<const scene::KFbxNode*, int32_t> boneOf;  ///< the other way round
  const scene::KFbxPose* bindPose = nullptr;
  std::shared_ptr<const scene::KFbxPose> skinPose;  ///< the bind pose when the skins tell it
  bool hasExtractedBones = false;                   ///< false too when the tree only holds the stand-in bone
  bool hasJoiningRoot = false;     ///< bone 0 is no bone of the scene; it joins several skeletons
  bool bindPoseAmbiguous = false;  ///< another bind pose has as many nodes
  /// First bind pose of each node; filled when an ambiguous bind pose lacks a node.
  std::unordered_map<const scene::KFbxNode*, const scene::KFbxPose*> firstPoseOf;
  /// The next ancestor in a bind pose, or null, of nodes that none has and that were asked for.
  std::unordered_map<const scene::KFbxNode*, const scene::KFbxNode*> nextBound;
  const scene::KFbxNode* firstBoneNode = nullptr;
  scene::KFbxXMatrix rootTransform;       ///< world transform of bone 0's node
  scene::KFbxVector4 rootScale{1, 1, 1};  ///< scale of bone 0; multiplies every stored translation
  scene::KFbxXMatrix actorTurn;           ///< model space of the bind pose -> model space of the files

  /// Drops what points into the scene, which goes.
  void ForgetScene();
};

}  // namespace ts3d
