// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mesh/cmf_writer.h"
#include "scene/model/mesh.h"

namespace ts3d {

/// The triangles of a mesh, sorted by their material.
class MaterialSlices {
 public:
  /// @param materialCount  materials of the node; below two the mesh is one slice
  MaterialSlices(const scene::KFbxMesh& mesh, const MeshData& data, int materialCount);

  /// Triangles that use a vertex twice; they belong to no slice. Only looked for with two or more materials.
  int DegenerateCount() const { return degenerateCount_; }
  /// The slice of material `material`.
  MeshSlice Slice(const std::string& meshName, int material);

 private:
  const MeshData& data_;
  bool whole_;
  int degenerateCount_ = 0;
  std::vector<uint32_t> ends_;       ///< end of each material's triangles in `triangles_`
  std::vector<uint32_t> triangles_;  ///< by material, ascending within each
  std::vector<int32_t> lastUse_;     ///< the last slice that each record was taken for
};

}  // namespace ts3d
