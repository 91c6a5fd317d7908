// SPDX-License-Identifier: MIT
#include "scene/model/polygon_table.h"

#include <algorithm>
#include <type_traits>

#include "scene/model/mesh_excess.h"

namespace scene {

KFbxPolygonTable::KFbxPolygonTable(FbxArray<int32_t>& corners, int32_t pointCount, uint64_t memory) {
  const auto cornerCount = static_cast<uint32_t>(corners.size());
  counts_.corners = cornerCount;
  const auto isLast = [&](uint32_t i) { return corners[i] < 0 || i + 1 == cornerCount; };
  while (evenSize_ < cornerCount && !isLast(evenSize_ - 1)) ++evenSize_;
  KFbxPolygon polygon;
  polygon.number = PassEven(corners, pointCount);
  polygon.firstCorner = polygon.number * evenSize_;
  bool sound = true;
  for (uint32_t i = polygon.firstCorner; i < cornerCount; ++i) {
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

uint32_t KFbxPolygonTable::PassEven(FbxArray<int32_t>& corners, int32_t pointCount) const {
  const auto isPoint = [count = static_cast<uint32_t>(pointCount)](int32_t corner) {
    return static_cast<uint32_t>(corner) < count;
  };
  const auto pass = [&](const auto size) {
    uint32_t number = 0;
    for (size_t first = 0; corners.size() - first > size; first += size, ++number) {
      int32_t* const polygon = corners.begin() + first;
      const int32_t last = ~polygon[size - 1];
      bool isEven = isPoint(last);
      for (uint32_t k = 0; k + 1 < size; ++k) isEven &= isPoint(polygon[k]);
      if (!isEven) break;
      polygon[size - 1] = last;
    }
    return number;
  };
  if (evenSize_ == 3) return pass(std::integral_constant<uint32_t, 3>());
  if (evenSize_ == 4) return pass(std::integral_constant<uint32_t, 4>());
  return 0;
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
