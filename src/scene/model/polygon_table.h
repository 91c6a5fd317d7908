// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "scene/container/array_reader.h"

namespace scene {

/// Where a polygon stands in the file's polygon table.
struct KFbxPolygon {
  uint32_t firstCorner = 0;
  uint32_t size = 0;
  uint32_t number = 0;  ///< among all polygons of the file, the dropped ones included
};

struct KFbxPolygonCounts {
  uint32_t corners = 0;   ///< of all polygons of the file
  uint32_t polygons = 0;  ///< without those dropped
  uint32_t dropped = 0;   ///< left out because a corner names a control point that does not exist
};

/// The polygons of a mesh, without their corners.
class KFbxPolygonTable {
 public:
  /// Reads the table that `corners` is in a file, where the last corner of each polygon is inverted, and makes
  /// plain control points of those.
  /// @param pointCount  control points of the mesh
  /// @param memory  bytes that the list may take
  /// @throws KFbxMeshExcess when it takes more
  KFbxPolygonTable(FbxArray<int32_t>& corners, int32_t pointCount, uint64_t memory);

  const KFbxPolygonCounts& Counts() const { return counts_; }
  uint32_t Count() const { return counts_.polygons; }
  KFbxPolygon operator[](uint32_t i) const {
    return evenSize_ != 0 ? KFbxPolygon{evenSize_ * i, evenSize_, i} : listed_[i];
  }
  /// Whether it is nothing but triangles, corner after corner.
  bool IsPlainTriangles() const { return evenSize_ == 3 || counts_.corners == 0; }
  /// Bytes of the list.
  uint64_t Memory() const { return sizeof(KFbxPolygon) * listed_.capacity(); }

 private:
  /// Inverts the last corners of triangles or quads, which most files have, up to a polygon that is not like them.
  /// @return how many there are; the last of the table is never among them
  uint32_t PassEven(FbxArray<int32_t>& corners, int32_t pointCount) const;
  /// From the polygon `next` on, polygons are not like those before it: each is listed.
  void StartListing(const KFbxPolygon& next, const FbxArray<int32_t>& corners, uint64_t memory);

  KFbxPolygonCounts counts_;
  uint32_t evenSize_ = 1;            ///< corners of every polygon, none of which is dropped; 0: listed
  std::vector<KFbxPolygon> listed_;  ///< empty when all are of the same size
};

}  // namespace scene
