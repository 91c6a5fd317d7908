// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mesh/point_data.h"
#include "scene/geometry/triangulate.h"
#include "scene/model/layer_element.h"

namespace ts3d {

/// Makes one record for each control point and a further one for each further texture coordinate that its
/// corners use. Corners that use a further one are changed to its record.
/// @param uvs  the texture coordinates, or null
/// @param mostFurther  most further records that the mesh may ask for
/// @throws scene::KFbxMeshExcess when there are more
std::vector<FullPointData> SplitVertices(int32_t controlPointCount, const scene::KFbxLayerElementUV* uvs,
                                         scene::KFbxTriangles& triangles, size_t mostFurther = SIZE_MAX);

}  // namespace ts3d
