// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/gltf/coordinate_table.h"
#include "scene/gltf/influence_lists.h"
#include "scene/gltf/rig.h"
#include "scene/gltf/triangle_list.h"

namespace scene::gltf {

/// A mesh with its primitives joined: vertices that stand at one place and move alike are one control point
/// again, as they were before the exporter split them for their normals and texture coordinates. Its long
/// arrays are made when somebody reads them, from what the file has.
struct Geometry {
  ControlPoints points;
  KFbxXMatrix place;                    ///< takes the points into the world at bind time
  std::vector<TriangleList> triangles;  ///< of each primitive
  std::vector<CoordinateList> coordinates;
  std::vector<uint32_t> materials;  ///< of the document, in order of first use; kNone: none
  InfluenceLists influences;        ///< of the joints of the skin

  size_t TriangleCount() const;
  /// Control points of all corners, three for each triangle, the last one as ~index.
  FbxArray<int32_t> MakeCorners() const;
  /// Pairs of texture coordinates.
  size_t PairCount() const;
  /// u and v of all pairs, v upwards.
  FbxArray<double> MakePairs() const;
  /// The pair of each corner, -1 for none.
  FbxArray<int32_t> MakeCoordinates() const;
  /// The material of each triangle, into `materials`.
  FbxArray<int32_t> MakeMaterials() const;
  /// Bytes of a primitive, whatever it holds.
  static constexpr uint64_t kPrimitiveMemory = 400;
  /// Bytes that it takes, arrays that are made later included.
  uint64_t Memory() const;
};

/// Where a mesh goes.
struct MeshPlace {
  KFbxXMatrix points;       ///< takes its points into the world
  bool isMirrored = false;  ///< its triangles turn the other way there
};

/// Joins the primitives of the mesh of node `node`.
/// @param jointCount  of its skin, whose influences are read; 0 for a mesh without
/// @throws Fault
Geometry JoinPrimitives(const Document& document, const AccessorReader& accessors, Budget& budget,
                        const Node& node, const MeshPlace& place, size_t jointCount);

}  // namespace scene::gltf
