// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "actor/actor.h"
#include "prove/affine.h"
#include "scene/model/scene.h"

namespace prove {

/// Where it is known from how a node stood at bind time.
enum class BoundBy {
  Pose,       ///< the file's main bind pose
  OtherPose,  ///< one of its other bind poses
  Link,       ///< only a cluster that follows it
  Parent      ///< nothing: it goes along with its parent, or stands as it does now
};

/// A node of the model.
struct RigNode {
  const scene::KFbxNode* node = nullptr;
  int32_t parent = -1;  ///< in `ModelRig::nodes`; -1 below the scene's root
  int32_t bone = -1;    ///< of the package; -1 when it has none for the node
  BoundBy boundBy = BoundBy::Parent;
  bool isLocalEntry = false;  ///< the bind pose says that its matrix is relative to the parent
  Affine present, bound;      ///< world transforms now and at bind time
  Affine place, stretch;      ///< bound relative to the parent: place * stretch; bones turn in between
};

/// The pose in which the package is taken to stand.
enum class Stand {
  BindPose,
  Skins,
  Now  ///< no bone and no skin, so that nothing ever moves to or from a bind pose
};

/// All nodes of a model and the bones of its package.
struct ModelRig {
  std::vector<RigNode> nodes;  ///< parents before children
  std::unordered_map<const scene::KFbxNode*, int32_t> numberOf;
  std::vector<int32_t> nodeOf;     ///< of each bone of the package; -1 for one that the converter made
  std::vector<int32_t> lostLinks;  ///< nodes that skins follow and that are no bone of the package
  const scene::KFbxPose* bindPose = nullptr;  ///< the first with the most nodes
  std::unordered_map<const scene::KFbxNode*, const scene::KFbxPose*>
      poseOf;  ///< first bind pose of each node
  std::vector<const scene::KFbxPose*>
      rulePoses;  ///< those that count by the rules of the format, in their order
  Stand stand = Stand::BindPose;
  Affine actorTurn;  ///< from the model's world to the space of the files
  /// Where animations have to place the root when the skeleton file does not; none when it does.
  std::optional<Point> rootPlace;

  int32_t Find(const scene::KFbxNode* node) const;
};

/// A place as packages store it.
Affine StoredFrame(const actor::Quaternion& rotation, const actor::Vector3& translation);

/// Reads the nodes of `scene` and finds the bones of `skeleton` among them.
/// @param isActor  the package stands turned up, as actors do
ModelRig ReadModelRig(const scene::KFbxScene& scene, const actor::Skeleton& skeleton, bool isActor);

/// World transforms of all nodes when the bones are turned in their own frames, from bind time.
/// @param turns  one for each bone of the package, and for each of `lostLinks`: these do not take along what
///               is below them, so that only what follows them is told
std::vector<Affine> TurnedWorlds(const ModelRig& rig, const std::vector<Turn>& turns);
/// World transforms of all nodes at bind time, or now.
std::vector<Affine> BoundWorlds(const ModelRig& rig);
std::vector<Affine> PresentWorlds(const ModelRig& rig);

}  // namespace prove
