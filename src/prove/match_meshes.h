// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "actor/actor.h"
#include "prove/model_mesh.h"

namespace prove {

/// A mesh file and the mesh of the model that it is made of.
struct MatchedMesh {
  const actor::Mesh* file = nullptr;
  size_t model = 0;              ///< in `Matches::models`
  std::vector<uint32_t> points;  ///< control point of each vertex
};

struct Matches {
  std::vector<ModelMesh> models;
  std::vector<MatchedMesh> meshes;     ///< in the order of the package
  std::vector<std::string> unmatched;  ///< mesh files that no mesh of the model fits
};

/// Finds the control point of every vertex of the package. Faces keep the order of the model's triangles and
/// corners, so that they tell, whatever was split.
Matches MatchMeshes(scene::KFbxScene& scene, const ModelRig& rig, const actor::Actor& actor);

}  // namespace prove
