// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <vector>

#include "mesh/point_data.h"
#include "mesh/texture_coordinates.h"
#include "package/actor_package.h"
#include "scene/container/array_reader.h"
#include "scene/geometry/triangulate.h"
#include "skeleton/bone_influences.h"

namespace ts3d {

/// What all output meshes of one scene mesh are cut from.
struct MeshData {
  scene::FbxArray<double> points;  ///< x, y, z of each control point
  std::vector<float> normals;      ///< x, y, z of each control point
  scene::KFbxTriangles triangles;
  std::vector<FullPointData> records;
  InfluenceTable influences;
};

/// One output mesh.
struct MeshSlice {
  std::string name;
  bool whole = false;               ///< all records and all triangles; the lists are empty then
  std::vector<int32_t> records;     ///< ascending
  std::vector<uint32_t> triangles;  ///< ascending

  size_t VertexCount(const MeshData& mesh) const { return whole ? mesh.records.size() : records.size(); }
  size_t FaceCount(const MeshData& mesh) const { return whole ? mesh.triangles.Count() : triangles.size(); }
};

/// Where mesh files go.
struct MeshFileOutput {
  WorkFiles& files;
  ActorPackage& package;
  const StatusChannel& status;
};

/// Writes `slice` as "<name>.cmf" into the model's folder. A file that cannot be written is left out without a
/// message.
/// @param outputIndex  scratch, one entry for each record; not used for a whole mesh
void WriteCmfFile(const MeshSlice& slice, const MeshData& mesh, TextureCoordinates& coordinates,
                  std::span<int32_t> outputIndex, const BoneTree& bones, int32_t threadId,
                  const MeshFileOutput& out);

}  // namespace ts3d
