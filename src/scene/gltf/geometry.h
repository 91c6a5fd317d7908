// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/gltf/rig.h"

namespace scene::gltf {

/// The points that one joint of a skin moves, and how much.
struct JointWeights {
  std::vector<int32_t> points;
  std::vector<float> weights;
};

/// A mesh with its primitives joined: vertices that stand at one place and move alike are one control point
/// again, as they were before the exporter split them for their normals and texture coordinates.
struct Geometry {
  std::vector<float> points;              ///< x, y, z of each control point, in the world at bind time
  std::vector<int32_t> corners;           ///< three for each triangle, the last one as ~index
  std::vector<float> uvs;                 ///< u, v pairs, v upwards; each pair once
  std::vector<int32_t> uvIndices;         ///< one for each corner, -1 for none; empty without coordinates
  std::vector<int32_t> polygonMaterials;  ///< one for each triangle, into `materials`
  std::vector<uint32_t> materials;        ///< of the document, in order of first use; kNone: none
  std::vector<JointWeights> joints;       ///< one for each joint of the skin

  uint64_t Memory() const;
};

/// Joins the primitives of the mesh of node `node`. Its points go where `place` takes them.
/// @param jointCount  of its skin, whose influences are read; 0 for a mesh without
/// @throws Fault
Geometry JoinPrimitives(const Document& document, const AccessorReader& accessors, Budget& budget,
                        const Node& node, const KFbxXMatrix& place, size_t jointCount);

}  // namespace scene::gltf
