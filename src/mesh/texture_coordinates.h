// SPDX-License-Identifier: MIT
#pragma once

#include "core/status_channel.h"
#include "mesh/point_data.h"
#include "scene/model/layer_element.h"
#include "scene/model/node.h"

namespace ts3d {

struct TextureCoordinate {
  double u = 0.0;
  double v = 0.0;
};

/// Looks up the texture coordinates of one mesh's records.
class TextureCoordinates {
 public:
  /// @param uvs  the mesh's texture coordinates, or null
  /// @param errorNode  the one node of a conversion that reports lost coordinates; null as long as none has
  TextureCoordinates(const scene::KFbxNode& node, const scene::KFbxLayerElementUV* uvs,
                     const StatusChannel& status, const scene::KFbxNode*& errorNode);

  /// The coordinate of record number `index`; (0, 0) when none applies. A record that should have one and has
  /// none is reported, but only for the first mesh of the conversion that has such records.
  TextureCoordinate Of(size_t index, const FullPointData& record);

  /// Whether some lookup found a coordinate.
  bool FoundAny() const { return foundAny_; }

 private:
  TextureCoordinate Found(size_t coordinate);
  void ReportMissing();

  const scene::KFbxNode& node_;
  const scene::KFbxLayerElementUV* uvs_;
  const StatusChannel& status_;
  const scene::KFbxNode*& errorNode_;
  bool foundAny_ = false;
};

}  // namespace ts3d
