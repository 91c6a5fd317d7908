// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mesh/cmf_writer.h"
#include "scene/model/node.h"

namespace ts3d {

/// A mesh of the scene and what was made of it.
struct ConvertedMesh {
  const scene::KFbxNode& node;
  const MeshData& data;
  std::vector<std::string> files;  ///< names of its mesh files, in order
};

}  // namespace ts3d
