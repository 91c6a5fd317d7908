// SPDX-License-Identifier: MIT
#include "mesh/texture_coordinates.h"

namespace ts3d {

TextureCoordinates::TextureCoordinates(const scene::KFbxNode& node, const scene::KFbxLayerElementUV* uvs,
                                       const StatusChannel& status, const scene::KFbxNode*& errorNode)
    : node_(node), uvs_(uvs), status_(status), errorNode_(errorNode) {}

TextureCoordinate TextureCoordinates::Found(size_t coordinate) {
  const std::span<const double> direct = uvs_->GetDirectArray();
  foundAny_ = true;
  return {direct[2 * coordinate], direct[2 * coordinate + 1]};
}

TextureCoordinate TextureCoordinates::Of(size_t index, const FullPointData& record) {
  if (!uvs_) return {};
  const auto count = static_cast<size_t>(uvs_->GetCoordinateCount());
  if (uvs_->GetMappingMode() == scene::EMappingMode::eBY_POLYGON_VERTEX) {
    const auto coordinate = static_cast<size_t>(record.textureIndex);
    if (record.textureIndex != -1 && coordinate < count) return Found(coordinate);
    ReportMissing();
  } else if (uvs_->GetMappingMode() == scene::EMappingMode::eBY_CONTROL_POINT) {
    if (uvs_->GetReferenceMode() == scene::EReferenceMode::eDIRECT)
      return index < count ? Found(index) : TextureCoordinate();
    if (uvs_->GetReferenceMode() != scene::EReferenceMode::eINDEX_TO_DIRECT) return {};
    const std::span<const int32_t> indices = uvs_->GetIndexArray();
    if (index < indices.size() && indices[index] >= 0 && static_cast<size_t>(indices[index]) < count) {
      return Found(static_cast<size_t>(indices[index]));
    }
  }
  return {};
}

void TextureCoordinates::ReportMissing() {
  if (!errorNode_) errorNode_ = &node_;
  if (errorNode_ != &node_) return;
  const std::string_view name = node_.GetName();
  status_.Send(Notice::MissingCoordinates, name.empty() ? "un-named Node" : name);
}

}  // namespace ts3d
