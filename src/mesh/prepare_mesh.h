// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mesh/cmf_writer.h"
#include "mesh/mesh_run.h"
#include "scene/model/node.h"

namespace ts3d {

/// Brings the mesh of `node`, whose output name is `name`, into the shape that its output meshes are cut
/// from. The arrays that only this needs are given up on the way.
MeshData PrepareMesh(scene::KFbxNode& node, const std::string& name, const ModelSource& model,
                     SkeletonState& skeleton, const MeshOptions& options);

}  // namespace ts3d
