// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

#include "scene/model/lazy.h"

namespace scene {

enum class EMappingMode { eNONE, eBY_CONTROL_POINT, eBY_POLYGON_VERTEX, eBY_POLYGON, eBY_EDGE, eALL_SAME };
enum class EReferenceMode { eDIRECT, eINDEX, eINDEX_TO_DIRECT };

/// How the entries of a layer element go with the mesh.
struct LayerElementModes {
  EMappingMode mapping = EMappingMode::eNONE;
  EReferenceMode reference = EReferenceMode::eDIRECT;
};

/// The mapping mode that `text` spells; eNONE for anything unknown.
EMappingMode MappingModeOf(std::string_view text);

/// Reads the modes of a "LayerElement..." record, in any of the spellings that files have.
LayerElementModes ReadLayerElementModes(RecordRef element);

/// Where the parts of an element stand in the file; versions before 6 have other names for them.
struct LayerElementSource {
  LayerElementModes modes;
  RecordRef direct;
  RecordRef index;
  bool isOld = false;  ///< of such a version
};

/// Finds the coordinate of a corner; good while the element holds its arrays.
class KFbxTextureUVLookup {
 public:
  KFbxTextureUVLookup() = default;
  /// @param indices  of the entries; null: each entry is its own
  KFbxTextureUVLookup(bool isByControlPoint, const int32_t* indices, size_t entryCount,
                      size_t coordinateCount)
      : isByControlPoint_(isByControlPoint),
        indices_(indices),
        entryCount_(entryCount),
        coordinateCount_(coordinateCount) {}

  /// Coordinate index of the corner number `polygonVertex` of the file's polygon table, which stands at
  /// `controlPoint`; -1 when it has none.
  int32_t operator()(size_t polygonVertex, int32_t controlPoint) const {
    const size_t entry = isByControlPoint_ ? static_cast<size_t>(controlPoint) : polygonVertex;
    if (entry >= entryCount_) return -1;
    const int32_t index = indices_ ? indices_[entry] : static_cast<int32_t>(entry);
    return index >= 0 && static_cast<size_t>(index) < coordinateCount_ ? index : -1;
  }

 private:
  bool isByControlPoint_ = false;
  const int32_t* indices_ = nullptr;
  size_t entryCount_ = 0;
  size_t coordinateCount_ = 0;
};

/// Texture coordinates of one layer. Its arrays are decoded when they are first read.
class KFbxLayerElementUV {
 public:
  KFbxLayerElementUV(const LayerElementSource& source, size_t polygonVertexCount);

  EMappingMode GetMappingMode() const { return modes_.mapping; }
  EReferenceMode GetReferenceMode() const { return modes_.reference; }
  /// u, v pairs; empty when the element is damaged.
  std::span<const double> GetDirectArray() const;
  std::span<const int32_t> GetIndexArray() const;
  void ReleaseIndexArray() { indices_.Release(); }

  int GetCoordinateCount() const { return static_cast<int>(GetDirectArray().size() / 2); }
  KFbxTextureUVLookup GetLookup() const;

 private:
  LayerElementModes modes_;
  RecordRef directRecord_, indexRecord_;
  LazyArray<double> direct_;
  LazyArray<int32_t> indices_;
};

/// Material of each polygon, as an index into the node's materials.
class KFbxLayerElementMaterial {
 public:
  explicit KFbxLayerElementMaterial(const LayerElementSource& source);

  EMappingMode GetMappingMode() const { return modes_.mapping; }
  EReferenceMode GetReferenceMode() const { return modes_.reference; }
  /// Material index of polygon `polygon` of the file, whose first corner is number `firstCorner` of the
  /// polygon table; -1 when it has none.
  int32_t GetMaterialIndex(size_t polygon, size_t firstCorner) const;

 private:
  LayerElementModes modes_;
  FbxArray<int32_t> indices_;
};

}  // namespace scene
