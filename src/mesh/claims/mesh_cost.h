// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "scene/model/mesh.h"

namespace ts3d {

/// What the conversion of a mesh takes at least, whatever its arrays hold.
struct MeshCost {
  uint64_t memory = 0;  ///< bytes, at the step that takes most of it
  uint64_t work = 0;    ///< bytes to go through
};

MeshCost CostOf(const scene::KFbxMeshClaim& claim);

/// The most memory that the conversion of the mesh may take.
uint64_t MemoryLimit(const scene::KFbxMesh& mesh);

/// What is left of all the memory that a conversion may take where it has `taken` bytes for the mesh.
uint64_t MemoryLeftBeside(const scene::KFbxMesh& mesh, uint64_t taken);

}  // namespace ts3d
