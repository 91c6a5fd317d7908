// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "driver/scene_loader.h"
#include "material/texture_files.h"
#include "mesh/cmf_writer.h"
#include "rig_check/rig_faults.h"
#include "rig_check/rig_report.h"
#include "rig_check/seen_notices.h"
#include "scene/model/mesh.h"
#include "scene/model/scene.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// One check under way: what stands in for a conversion, what it says, and what was found.
struct RigCheck {
  std::string path;  ///< of the model
  Settings settings;
  ActorType actorType = ActorType::None;
  StatusChannel status;
  LoadedScene loaded;
  SkeletonState skeleton;
  SeenNotices notices;
  RigReport report;
  RigFaults faults;
  double rigSize = 0.0;  ///< extent of the bones, for what counts as a small distance

  /// A place for an output mesh and its material file, whether triangles fill it or not.
  struct Slot {
    std::string name;      ///< output name
    std::string node;      ///< the mesh's name in the model
    bool written = false;  ///< it has triangles
  };
  std::vector<Slot> slots;
  std::unordered_map<std::string, size_t> textureOf;  ///< index in the report's textures, by source

  /// The scene must be loaded.
  ModelSource Model() const { return {loaded.Scene(), settings, status, actorType, report.format == "FBX"}; }
  MeshFilter Filter() const { return {settings.exclusionList, actorType}; }
};

// check_bones.cpp: the skeleton, just extracted.
void CheckBones(RigCheck& check);
// check_pose.cpp: where the bones are at bind time.
void CheckPose(RigCheck& check);
/// Where the bone of `node` is in the bind pose, or now when the bind pose lacks it.
const scene::KFbxXMatrix& RestMatrix(const scene::KFbxNode& node, const SkeletonState& skeleton);
// check_actor_bones.cpp: bones that the product wants in an actor.
void CheckActorBones(RigCheck& check);

// check_mesh.cpp: one mesh node, as the conversion comes to it.
void CheckMeshNode(scene::KFbxNode& node, RigCheck& check);
// check_skins.cpp: the skins of a mesh, before it is prepared, and its weights, after it was.
void CheckSkins(const scene::KFbxNode& node, const scene::KFbxMesh& mesh, RigCheck& check);
void CheckWeights(const scene::KFbxNode& node, const MeshData& data, size_t pointCount, RigCheck& check);
// check_materials.cpp: material number `index` of a mesh; the ".tga" name of its picture is returned.
std::string CheckMaterial(const scene::KFbxSurfaceMaterial& material, bool hasMap, RigCheck& check);

// check_names.cpp: all names, at the end.
void CheckNames(RigCheck& check);
/// What of `name` became what of `cleaned`, up to the last
/// difference: names that share a prefix are one finding.
std::vector<std::string> ChangedBeginning(const std::string& name, const std::string& cleaned);
/// The package's files, in their order.
std::vector<std::string> ExpectedMembers(const RigCheck& check);

}  // namespace ts3d
