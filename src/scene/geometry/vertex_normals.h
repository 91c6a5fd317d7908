// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace scene {

/// Smooth unit normals, one for each point: the normals of the adjoining triangles, weighted by their angle
/// at the point. They point outward for counter-clockwise triangles, inward with `clockwise`. A point without
/// triangles, or whose triangles cancel out, gets (0, 0, 0).
/// @param points  x, y, z of each point
/// @param triangles  three points each
/// @return x, y, z of each normal
std::vector<float> ComputeVertexNormals(std::span<const double> points, std::span<const int32_t> triangles,
                                        bool clockwise);

}  // namespace scene
