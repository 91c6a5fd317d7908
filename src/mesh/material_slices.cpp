// SPDX-License-Identifier: MIT
#include "mesh/material_slices.h"

#include <algorithm>

#include "core/names.h"

namespace ts3d {
namespace {

bool IsDegenerate(const int32_t* corner) {
  return corner[0] == corner[1] || corner[2] == corner[0] || corner[2] == corner[1];
}

int32_t MaterialOf(const scene::KFbxPolygonTable& polygons, const scene::KFbxLayerElementMaterial& materials,
                   uint32_t polygon) {
  const scene::KFbxPolygon source = polygons[polygon];
  return materials.GetMaterialIndex(source.number, source.firstCorner);
}

}  // namespace

MaterialSlices::MaterialSlices(const scene::KFbxMesh& mesh, const MeshData& data, int materialCount)
    : data_(data), whole_(materialCount < 2) {
  if (whole_) return;
  constexpr int32_t kNone = -1;
  const size_t count = data.triangles.Count();
  const scene::KFbxLayerElementMaterial* materials = mesh.GetMaterials();
  const scene::KFbxPolygonTable& polygons = mesh.GetPolygons();
  std::vector<int32_t> materialOf(count, kNone);
  ends_.resize(static_cast<size_t>(materialCount));
  for (size_t t = 0; t < count; ++t) {
    if (IsDegenerate(&data.triangles.corners[3 * t])) {
      ++degenerateCount_;
      continue;
    }
    const int32_t material = materials ? MaterialOf(polygons, *materials, data.triangles.Polygon(t)) : 0;
    if (material < 0 || material >= materialCount) continue;
    materialOf[t] = material;
    ++ends_[static_cast<size_t>(material)];
  }
  uint32_t sum = 0;
  for (uint32_t& end : ends_) {
    const uint32_t size = end;
    end = sum;
    sum += size;
  }
  triangles_.resize(sum);
  for (size_t t = 0; t < count; ++t) {
    if (materialOf[t] != kNone)
      triangles_[ends_[static_cast<size_t>(materialOf[t])]++] = static_cast<uint32_t>(t);
  }
  lastUse_.assign(data.records.size(), kNone);
}

MeshSlice MaterialSlices::Slice(const std::string& meshName, int material) {
  MeshSlice slice;
  slice.name = SliceName(meshName, material);
  slice.whole = whole_;
  if (whole_) return slice;
  const auto m = static_cast<size_t>(material);
  const auto begin = triangles_.begin() + (m == 0 ? 0 : ends_[m - 1]);
  slice.triangles.assign(begin, triangles_.begin() + ends_[m]);
  for (const uint32_t triangle : slice.triangles) {
    for (size_t k = 0; k < 3; ++k) {
      const int32_t record = data_.triangles.corners[3 * static_cast<size_t>(triangle) + k];
      int32_t& lastUse = lastUse_[static_cast<size_t>(record)];
      if (lastUse != material) slice.records.push_back(record);
      lastUse = material;
    }
  }
  std::sort(slice.records.begin(), slice.records.end());
  return slice;
}

}  // namespace ts3d
