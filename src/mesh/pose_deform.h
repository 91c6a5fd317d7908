// SPDX-License-Identifier: MIT
#pragma once

#include "scene/container/array_reader.h"
#include "scene/model/node.h"
#include "skeleton/model_source.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// Control points of the mesh of `node` in the space that bone space maps
/// from: the world of the bind pose, stood up for actors. A mesh without a
/// bind pose entry keeps its own space and only gets its geometric transform.
/// The mesh gives up its points, and the arrays of its skins once they are used.
/// @return x, y, z of each control point
scene::FbxArray<double> PoseControlPoints(scene::KFbxNode& node, const ModelSource& model,
                                          SkeletonState& skeleton);

}  // namespace ts3d
