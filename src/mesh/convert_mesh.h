// SPDX-License-Identifier: MIT
#pragma once

#include "mesh/mesh_run.h"
#include "scene/model/node.h"

namespace ts3d {

/// Converts the mesh of `node`: writes a mesh file for each of its materials that has triangles, and a
/// material file for each of its materials. Meshes without control points and those that the mesh filter
/// refuses are left out.
void ConvertMeshNode(scene::KFbxNode& node, MeshRun& run);

}  // namespace ts3d
