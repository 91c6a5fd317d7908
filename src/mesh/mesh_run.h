// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "material/material_output.h"
#include "skeleton/model_source.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

struct ConvertedMesh;

/// The host's wishes for normals, see FbxToTs3dOptions.
struct MeshOptions {
  int32_t mode;
  std::string_view list;
};

/// What the meshes of one conversion have in common. All that it refers to outlives it.
struct MeshRun {
  const ModelSource& model;
  SkeletonState& skeleton;
  MaterialOutput& out;
  MeshOptions options;
  int32_t& nextThreadId;
  int32_t &vertexTotal, &polygonTotal;  ///< control points and triangles so far
  const std::function<void(const ConvertedMesh&)>& onMesh;

  /// The one mesh node that reports lost texture coordinates.
  const scene::KFbxNode* textureErrorNode = nullptr;
  bool materialReferenceReported = false;
};

}  // namespace ts3d
