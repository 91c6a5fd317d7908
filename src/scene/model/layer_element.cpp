// SPDX-License-Identifier: MIT
#include "scene/model/layer_element.h"

namespace scene {

EMappingMode MappingModeOf(std::string_view text) {
  if (text == "ByVertice" || text == "ByVertex" || text == "ByControlPoint")
    return EMappingMode::eBY_CONTROL_POINT;
  if (text == "ByPolygonVertex") return EMappingMode::eBY_POLYGON_VERTEX;
  if (text == "ByPolygon") return EMappingMode::eBY_POLYGON;
  if (text == "ByEdge") return EMappingMode::eBY_EDGE;
  return text == "AllSame" ? EMappingMode::eALL_SAME : EMappingMode::eNONE;
}

LayerElementModes ReadLayerElementModes(RecordRef element) {
  const std::string_view reference = element.Child("ReferenceInformationType").Text(0);
  LayerElementModes modes;
  modes.mapping = MappingModeOf(element.Child("MappingInformationType").Text(0));
  if (reference == "IndexToDirect") modes.reference = EReferenceMode::eINDEX_TO_DIRECT;
  if (reference == "Index") modes.reference = EReferenceMode::eINDEX;
  return modes;
}

KFbxLayerElementUV::KFbxLayerElementUV(const LayerElementSource& source, size_t polygonVertexCount)
    : modes_(source.modes), directRecord_(source.direct), indexRecord_(source.index) {
  const bool isIndex = modes_.reference == EReferenceMode::eINDEX;
  if (isIndex && modes_.mapping == EMappingMode::eBY_CONTROL_POINT) return;  // stands for nothing there
  // Without an index array the coordinates can only be meant directly.
  if (indexRecord_.ValueCount() == 0) {
    modes_.reference = EReferenceMode::eDIRECT;
  } else if (isIndex) {
    modes_.reference = EReferenceMode::eINDEX_TO_DIRECT;
  }
  if (!source.isOld || modes_.mapping != EMappingMode::eBY_POLYGON) return;
  // Old exporters say "by polygon" where they list every corner.
  const size_t entries = modes_.reference == EReferenceMode::eDIRECT
                             ? static_cast<size_t>(GetCoordinateCount())
                             : GetIndexArray().size();
  if (entries == polygonVertexCount) modes_.mapping = EMappingMode::eBY_POLYGON_VERTEX;
}

std::span<const double> KFbxLayerElementUV::GetDirectArray() const {
  const auto read = [this] {
    FbxArray<double> pairs = ArrayOf<double>(directRecord_);
    if (pairs.size() % 2 != 0) pairs.Release();
    return pairs;
  };
  return direct_.Get(read).View();
}

std::span<const int32_t> KFbxLayerElementUV::GetIndexArray() const {
  return indices_.Get([this] { return ArrayOf<int32_t>(indexRecord_); }).View();
}

KFbxTextureUVLookup KFbxLayerElementUV::GetLookup() const {
  const bool isByControlPoint = modes_.mapping == EMappingMode::eBY_CONTROL_POINT;
  if (!isByControlPoint && modes_.mapping != EMappingMode::eBY_POLYGON_VERTEX) return {};
  if (modes_.reference == EReferenceMode::eINDEX) return {};
  const auto count = static_cast<size_t>(GetCoordinateCount());
  if (modes_.reference == EReferenceMode::eDIRECT) return {isByControlPoint, nullptr, count, count};
  const std::span<const int32_t> indices = GetIndexArray();
  return {isByControlPoint, indices.data(), indices.size(), count};
}

KFbxLayerElementMaterial::KFbxLayerElementMaterial(const LayerElementSource& source)
    : modes_(source.modes), indices_(ArrayOf<int32_t>(source.index)) {}

int32_t KFbxLayerElementMaterial::GetMaterialIndex(size_t polygon, size_t firstCorner) const {
  size_t entry = 0;
  if (modes_.mapping == EMappingMode::eBY_POLYGON) entry = polygon;
  if (modes_.mapping == EMappingMode::eBY_POLYGON_VERTEX) entry = firstCorner;
  return entry < indices_.size() ? indices_[entry] : -1;
}

}  // namespace scene
