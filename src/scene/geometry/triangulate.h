// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "scene/model/mesh.h"

namespace scene {

/// A mesh as triangles. Corners keep what they are in the file: their texture coordinates and their polygon.
struct KFbxTriangles {
  FbxArray<int32_t> corners;  ///< control points, three for each triangle
  FbxArray<uint32_t>
      sourceCorners;            ///< number of each corner in the file's polygon table; empty: the same number
  FbxArray<uint32_t> polygons;  ///< index of each triangle's polygon; empty: the same index

  size_t Count() const { return corners.size() / 3; }
  uint32_t SourceCorner(size_t corner) const {
    return sourceCorners.empty() ? static_cast<uint32_t>(corner) : sourceCorners[corner];
  }
  uint32_t Polygon(size_t triangle) const {
    return polygons.empty() ? static_cast<uint32_t>(triangle) : polygons[triangle];
  }
};

/// Triangles of `mesh`, whose corners are gone from it when it is all triangles: n - 2 for a polygon of n
/// corners, none for one of fewer than three. Concave polygons are cut in their own plane; winding is kept.
KFbxTriangles TriangulateMesh(KFbxMesh& mesh);

}  // namespace scene
