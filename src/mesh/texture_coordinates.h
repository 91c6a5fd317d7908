// SPDX-License-Identifier: MIT
#pragma once

#include "core/conversion_job.h"
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
  TextureCoordinates(const scene::KFbxNode& node, scene::KFbxLayerElementUV* uvs, ConversionJob& job);

  /// The coordinate of record number `index`; (0, 0) when none applies. A record that should have one and has
  /// none is reported, but only for the first mesh of the conversion that has such records.
  TextureCoordinate Of(size_t index, const FullPointData& record);

  /// Whether some lookup found a coordinate.
  bool FoundAny() const { return foundAny_; }

 private:
  TextureCoordinate Found(size_t coordinate);
  void ReportMissing();

  const scene::KFbxNode& node_;
  scene::KFbxLayerElementUV* uvs_;
  ConversionJob& job_;
  bool foundAny_ = false;
};

}  // namespace ts3d
