// SPDX-License-Identifier: MIT
#include "scene/model/polygon_table.h"

#include <algorithm>

#include "scene/model/mesh_excess.h"

namespace scene {

KFbxPolygonTable::KFbxPolygonTable(FbxArray<int32_t>& corners, int32_t pointCount, uint64_t memory) {
  const auto cornerCount = static_cast<uint32_t>(corners.size());
  counts_.corners = cornerCount;
  const auto isLast = [&](uint32_t i) { return corners[i] < 0 || i + 1 == cornerCount; };
  while (evenSize_ < cornerCount && !isLast(evenSize_ - 1)) ++evenSize_;
  KFbxPolygon polygon;
  bool sound = true;
  for (uint32_t i = 0; i < cornerCount; ++i) {
    const bool last = isLast(i);
    int32_t& corner = corners[i];
    if (corner < 0) corner = ~corner;
    sound &= corner < pointCount;
    if (!last) continue;
    polygon.size = i + 1 - polygon.firstCorner;
    if (evenSize_ != 0 && (polygon.size != evenSize_ || !sound)) StartListing(polygon, corners, memory);
    if (!sound) {
      ++counts_.dropped;
    } else if (evenSize_ == 0) {
      listed_.push_back(polygon);
    }
    sound = true;
    ++polygon.number;
    polygon.firstCorner = i + 1;
  }
  counts_.polygons = polygon.number - counts_.dropped;
}

void KFbxPolygonTable::StartListing(const KFbxPolygon& next, const FbxArray<int32_t>& corners,
                                    uint64_t memory) {
  const auto left = corners.View().subspan(next.firstCorner + next.size);
  const auto isNegative = [](int32_t corner) { return corner < 0; };
  const size_t most =
      next.number + 2 + static_cast<size_t>(std::count_if(left.begin(), left.end(), isNegative));
  if (most * sizeof(KFbxPolygon) > memory) throw KFbxMeshExcess();
  listed_.reserve(most);
  for (uint32_t k = 0; k < next.number; ++k) listed_.push_back({evenSize_ * k, evenSize_, k});
  evenSize_ = 0;
}

}  // namespace scene
