// SPDX-License-Identifier: MIT
#include "scene/model/layer_element.h"

namespace scene {

LayerElementModes ReadLayerElementModes(RecordRef element) {
  const std::string_view mapping = element.Child("MappingInformationType").Text(0);
  const std::string_view reference = element.Child("ReferenceInformationType").Text(0);
  LayerElementModes modes;
  if (mapping == "ByVertice" || mapping == "ByVertex" || mapping == "ByControlPoint") {
    modes.mapping = EMappingMode::eBY_CONTROL_POINT;
  } else if (mapping == "ByPolygonVertex") {
    modes.mapping = EMappingMode::eBY_POLYGON_VERTEX;
  } else if (mapping == "ByPolygon") {
    modes.mapping = EMappingMode::eBY_POLYGON;
  } else if (mapping == "ByEdge") {
    modes.mapping = EMappingMode::eBY_EDGE;
  } else if (mapping == "AllSame") {
    modes.mapping = EMappingMode::eALL_SAME;
  }
  if (reference == "IndexToDirect") {
    modes.reference = EReferenceMode::eINDEX_TO_DIRECT;
  } else if (reference == "Index") {
    modes.reference = EReferenceMode::eINDEX;
  }
  return modes;
}

KFbxLayerElementUV::KFbxLayerElementUV(RecordRef element, size_t polygonVertexCount)
    : element_(element), modes_(ReadLayerElementModes(element)) {
  // Without an index array the coordinates can only be meant directly.
  if (element.Child("UVIndex").ValueCount() == 0) {
    modes_.reference = EReferenceMode::eDIRECT;
  } else if (modes_.reference == EReferenceMode::eINDEX) {
    modes_.reference = EReferenceMode::eINDEX_TO_DIRECT;
  }
  if (modes_.mapping != EMappingMode::eBY_POLYGON) return;
  // Old exporters say "by polygon" where they list every corner.
  const size_t entries = modes_.reference == EReferenceMode::eDIRECT
                             ? static_cast<size_t>(GetCoordinateCount())
                             : GetIndexArray().size();
  if (entries == polygonVertexCount) modes_.mapping = EMappingMode::eBY_POLYGON_VERTEX;
}

std::span<const double> KFbxLayerElementUV::GetDirectArray() {
  if (!directRead_) {
    directRead_ = true;
    if (!ReadArray(element_.Child("UV"), direct_) || direct_.size() % 2 != 0) direct_.Release();
  }
  return direct_.View();
}

std::span<const int32_t> KFbxLayerElementUV::GetIndexArray() {
  if (!indicesRead_) {
    indicesRead_ = true;
    if (!ReadArray(element_.Child("UVIndex"), indices_)) indices_.Release();
  }
  return indices_.View();
}

int32_t KFbxLayerElementUV::GetTextureUVIndex(size_t polygonVertex, int32_t controlPoint) {
  size_t entry = 0;
  switch (modes_.mapping) {
    case EMappingMode::eBY_CONTROL_POINT:
      entry = static_cast<size_t>(controlPoint);
      break;
    case EMappingMode::eBY_POLYGON_VERTEX:
      entry = polygonVertex;
      break;
    default:
      return -1;
  }
  const auto count = static_cast<size_t>(GetCoordinateCount());
  if (modes_.reference == EReferenceMode::eDIRECT) return entry < count ? static_cast<int32_t>(entry) : -1;
  const std::span<const int32_t> indices = GetIndexArray();
  if (entry >= indices.size()) return -1;
  const int32_t index = indices[entry];
  return index >= 0 && static_cast<size_t>(index) < count ? index : -1;
}

KFbxLayerElementMaterial::KFbxLayerElementMaterial(RecordRef element)
    : modes_(ReadLayerElementModes(element)) {
  if (!ReadArray(element.Child("Materials"), indices_)) indices_.Release();
}

int32_t KFbxLayerElementMaterial::GetMaterialIndex(size_t polygon, size_t firstCorner) const {
  size_t entry = 0;
  if (modes_.mapping == EMappingMode::eBY_POLYGON) entry = polygon;
  if (modes_.mapping == EMappingMode::eBY_POLYGON_VERTEX) entry = firstCorner;
  return entry < indices_.size() ? indices_[entry] : -1;
}

}  // namespace scene
