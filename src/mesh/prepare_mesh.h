// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/conversion_job.h"
#include "mesh/cmf_writer.h"
#include "scene/model/node.h"

namespace ts3d {

/// Brings the mesh of `node`, whose output name is `name`, into the shape that its output meshes are cut
/// from, and adds it to the job's totals. The arrays that only this needs are given up on the way.
MeshData PrepareMesh(const scene::KFbxNode& node, const std::string& name, ConversionJob& job);

}  // namespace ts3d
