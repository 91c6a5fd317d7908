// SPDX-License-Identifier: MIT
#include "mesh/split_vertices.h"

#include <unordered_map>

#include "scene/mixed_hash.h"
#include "scene/model/mesh.h"

namespace ts3d {
namespace {

/// The corner list is walked once. Appended records are found by (control point, coordinate), so the work is
/// linear however often a control point is split.
class VertexSplitter {
 public:
  VertexSplitter(int32_t controlPointCount, scene::KFbxLayerElementUV* uvs, scene::KFbxTriangles& triangles,
                 size_t mostFurther)
      : uvs_(uvs), triangles_(triangles), mostFurther_(mostFurther) {
    const auto count = static_cast<size_t>(controlPointCount);
    // Room for what seams usually add: moving all records takes longer than finding them.
    records_.reserve(count + count / 4);
    records_.resize(count);
    for (int32_t i = 0; i < controlPointCount; ++i) records_[static_cast<size_t>(i)].controlPoint = i;
  }

  std::vector<FullPointData> Split() {
    for (size_t corner = 0; corner < triangles_.corners.size(); ++corner) Visit(corner);
    for (const size_t corner : unmapped_) MoveUnmapped(corner);
    return std::move(records_);
  }

 private:
  void Visit(size_t corner) {
    int32_t& index = triangles_.corners[corner];
    FullPointData& record = records_[static_cast<size_t>(index)];
    const int32_t coordinate = uvs_ ? uvs_->GetTextureUVIndex(triangles_.SourceCorner(corner), index) : -1;
    if (record.textureIndex == -1 || record.textureIndex == coordinate) {
      record.textureIndex = coordinate;
      record.influenceList = index;
      // Whether a corner without a coordinate can stay is only known at the end.
      if (coordinate == -1 && uvs_) unmapped_.push_back(corner);
      return;
    }
    index = FurtherRecord(index, coordinate);
  }

  static uint64_t Key(int32_t controlPoint, int32_t coordinate) {
    return scene::PairKey(static_cast<uint32_t>(controlPoint), static_cast<uint32_t>(coordinate));
  }

  int32_t FurtherRecord(int32_t controlPoint, int32_t coordinate) {
    const auto [entry, isNew] =
        further_.try_emplace(Key(controlPoint, coordinate), static_cast<int32_t>(records_.size()));
    if (isNew) {
      if (further_.size() > mostFurther_) throw scene::KFbxMeshExcess();
      records_.push_back({controlPoint, coordinate, controlPoint});
    }
    return entry->second;
  }

  /// A record made for corners without a coordinate takes over those that were met before it, too.
  void MoveUnmapped(size_t corner) {
    int32_t& index = triangles_.corners[corner];
    const auto entry = further_.find(Key(index, -1));
    if (entry != further_.end()) index = entry->second;
  }

  scene::KFbxLayerElementUV* uvs_;
  scene::KFbxTriangles& triangles_;
  const size_t mostFurther_;
  std::vector<FullPointData> records_;
  std::unordered_map<uint64_t, int32_t, scene::MixedHash> further_;
  std::vector<size_t> unmapped_;
};

}  // namespace

std::vector<FullPointData> SplitVertices(int32_t controlPointCount, scene::KFbxLayerElementUV* uvs,
                                         scene::KFbxTriangles& triangles, size_t mostFurther) {
  return VertexSplitter(controlPointCount, uvs, triangles, mostFurther).Split();
}

}  // namespace ts3d
