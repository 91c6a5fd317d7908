// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>

#include "scene/math/matrix.h"
#include "scene/model/mesh.h"
#include "scene/model/node.h"
#include "skeleton/model_source.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// The skeleton that a loaded model gets with some repairs, and what is wrong then. Says nothing to the host.
class RepairTrial {
 public:
  RepairTrial(const ModelSource& loaded, const RepairSettings& repairs);

  /// Bones that skins or meshes hang on and that are not extracted.
  size_t LostBones();
  /// Places where the skin leaves its bones or stands otherwise than it was bound: clusters and meshes.
  size_t UnboundSkins();
  /// Meshes without a skin that leave the bone that they hang on, or their place.
  size_t StrayMeshes();
  /// Bones with weights that stand elsewhere than in the world, or apart from their bone space.
  size_t MisplacedBones();

 private:
  using VisitMesh = std::function<void(const scene::KFbxNode& node, const scene::KFbxMesh& mesh)>;
  using VisitCluster = std::function<void(const scene::KFbxNode& node, const scene::KFbxCluster& cluster)>;

  /// Every mesh that gets into the package.
  void ForEachMesh(const VisitMesh& visit);
  /// Every cluster of theirs that has weights and a bone.
  void ForEachCluster(const VisitCluster& visit);
  scene::KFbxXMatrix WorldOf(const scene::KFbxNode& node);
  bool Differ(const scene::KFbxXMatrix& a, const scene::KFbxXMatrix& b) const;
  double MeasureSize();

  const Settings settings_;
  const StatusChannel mute_;
  const ModelSource model_;
  SkeletonState skeleton_;
  double size_ = 0.0;  ///< extent of the bones, for what counts as a small distance
};

}  // namespace ts3d
