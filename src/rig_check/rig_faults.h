// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/vectors.h"
#include "mesh/converted_mesh.h"
#include "rig_check/rig_report.h"
#include "scene/model/pose.h"
#include "skeleton/model_source.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// What the faults of a rig show in, of one mesh.
struct MeshFacts {
  const scene::KFbxNode* node;
  std::vector<std::string> files;            ///< names of its mesh files, in order
  const scene::KFbxPose* pose;               ///< bind pose that it was brought into, or null
  std::vector<uint8_t> follows;              ///< by bone identifier: whether some point follows it
  std::vector<std::array<float, 3>> points;  ///< that faces use, as the package has them
  base::Box box;                             ///< around them

  bool Follows(int32_t bone) const;
  bool FollowsAny() const;
  /// Whether the bind pose has the mesh.
  bool IsPosed(const SkeletonState& skeleton) const;
};

/// The faults of a rig that spoil its package. A check and a conversion tell the same ones, found here.
class RigFaults {
 public:
  /// Takes each mesh when it is converted.
  void Take(const ConvertedMesh& mesh, const SkeletonState& skeleton);

  /// Adds what is wrong to `report`, when all meshes have come; the scene has to be there still.
  void Tell(const ModelSource& model, SkeletonState& skeleton, RigReport& report) const;

 private:
  std::vector<MeshFacts> meshes_;
};

/// Largest side of the box around all bones and points.
double ModelSize(const std::vector<MeshFacts>& meshes, const SkeletonState& skeleton);

// The faults that RigFaults tells.

// tell_lost_bones.cpp: skeleton nodes that are no bones, and the weights for them.
/// @return whether groups hide the whole skeleton
bool TellLostBones(const ModelSource& model, const SkeletonState& skeleton,
                   const std::vector<MeshFacts>& meshes, RigReport& report);
// tell_skin_places.cpp: skins and bones that do not stand where they were bound.
void TellSkinPlaces(const ModelSource& model, SkeletonState& skeleton, const std::vector<MeshFacts>& meshes,
                    RigReport& report);
/// The same for models without a skeleton.
void TellStaticMeshes(const ModelSource& model, SkeletonState& skeleton, const std::vector<MeshFacts>& meshes,
                      RigReport& report);
// tell_choices.cpp: what the conversion does unasked, and nobody would see.
void TellChoices(const ModelSource& model, RigReport& report);

// tell_root_scale.cpp: the place of a scaled root.
void TellRootScale(const RepairSettings& repairs, const SkeletonState& skeleton,
                   const std::vector<MeshFacts>& meshes, RigReport& report);
// tell_parts.cpp: parts that get the material of another one.
void TellShiftedParts(const ModelSource& model, const std::vector<MeshFacts>& meshes, RigReport& report);
// tell_file_faults.cpp: files that hold something else than a model.
void TellFileFaults(const ModelSource& model, RigReport& report);

}  // namespace ts3d
