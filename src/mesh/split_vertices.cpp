// SPDX-License-Identifier: MIT
#include "mesh/split_vertices.h"

#include <algorithm>

#include "base/mixed_hash.h"
#include "scene/model/mesh.h"

namespace ts3d {
namespace {

/// Finds records by control point and coordinate: a hash table
/// of their numbers, four to eight bytes for each.
class RecordTable {
 public:
  explicit RecordTable(const std::vector<FullPointData>& records) : records_(records) {}

  size_t Count() const { return count_; }

  /// The number of the record that was added for these, or -1.
  int32_t Find(int32_t controlPoint, int32_t coordinate) const {
    return slots_.empty() ? kEmpty : slots_[SlotOf(controlPoint, coordinate)];
  }

  /// Adds the record `number`, for whose control point and coordinate there is none yet.
  void Add(int32_t number) {
    if (2 * (count_ + 1) > slots_.size()) Grow();
    Put(number);
    ++count_;
  }

 private:
  static constexpr int32_t kEmpty = -1;

  /// The slot that holds the record or would.
  size_t SlotOf(int32_t controlPoint, int32_t coordinate) const {
    const size_t mask = slots_.size() - 1;
    const uint64_t key =
        base::PairKey(static_cast<uint32_t>(controlPoint), static_cast<uint32_t>(coordinate));
    for (size_t slot = base::MixedHash()(key) & mask;; slot = (slot + 1) & mask) {
      if (slots_[slot] == kEmpty) return slot;
      const FullPointData& record = records_[static_cast<size_t>(slots_[slot])];
      if (record.controlPoint == controlPoint && record.textureIndex == coordinate) return slot;
    }
  }

  void Put(int32_t number) {
    const FullPointData& record = records_[static_cast<size_t>(number)];
    slots_[SlotOf(record.controlPoint, record.textureIndex)] = number;
  }

  void Grow() {
    std::vector<int32_t> old(std::max<size_t>(2 * slots_.size(), 64), kEmpty);
    old.swap(slots_);
    for (const int32_t number : old) {
      if (number != kEmpty) Put(number);
    }
  }

  const std::vector<FullPointData>& records_;
  std::vector<int32_t> slots_;  ///< a power of two of them, at most half of them used
  size_t count_ = 0;
};

/// The corner list is walked once. Appended records are found by (control point, coordinate), so the work is
/// linear however often a control point is split.
class VertexSplitter {
 public:
  VertexSplitter(int32_t controlPointCount, const scene::KFbxLayerElementUV* uvs,
                 scene::KFbxTriangles& triangles, size_t mostFurther)
      : hasUVs_(uvs), triangles_(triangles), mostFurther_(mostFurther) {
    if (uvs) lookup_ = uvs->GetLookup();
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
    const int32_t coordinate = lookup_(triangles_.SourceCorner(corner), index);
    if (record.textureIndex == -1 || record.textureIndex == coordinate) {
      record.textureIndex = coordinate;
      record.influenceList = index;
      // Whether a corner without a coordinate can stay is only known at the end.
      if (coordinate == -1 && hasUVs_) unmapped_.push_back(corner);
      return;
    }
    index = FurtherRecord(index, coordinate);
  }

  int32_t FurtherRecord(int32_t controlPoint, int32_t coordinate) {
    const int32_t known = further_.Find(controlPoint, coordinate);
    if (known != -1) return known;
    if (further_.Count() == mostFurther_) throw scene::KFbxMeshExcess();
    const auto number = static_cast<int32_t>(records_.size());
    records_.push_back({controlPoint, coordinate, controlPoint});
    further_.Add(number);
    return number;
  }

  /// A record made for corners without a coordinate takes over those that were met before it, too.
  void MoveUnmapped(size_t corner) {
    int32_t& index = triangles_.corners[corner];
    const int32_t further = further_.Find(index, -1);
    if (further != -1) index = further;
  }

  const bool hasUVs_;
  scene::KFbxTextureUVLookup lookup_;
  scene::KFbxTriangles& triangles_;
  const size_t mostFurther_;
  std::vector<FullPointData> records_;
  RecordTable further_{records_};
  std::vector<size_t> unmapped_;
};

}  // namespace

std::vector<FullPointData> SplitVertices(int32_t controlPointCount, const scene::KFbxLayerElementUV* uvs,
                                         scene::KFbxTriangles& triangles, size_t mostFurther) {
  return VertexSplitter(controlPointCount, uvs, triangles, mostFurther).Split();
}

}  // namespace ts3d
