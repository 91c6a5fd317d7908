// SPDX-License-Identifier: MIT
#include <algorithm>

#include "scene/model/mesh.h"

namespace scene {
namespace {

constexpr uint64_t kRecordWork = 64;    ///< searching among the records of a mesh
constexpr uint64_t kClusterWork = 512;  ///< a few matrix products

/// Of several sets of coordinates one is in memory at a time.
uint64_t LargestCoordinates(RecordRef geometry) {
  uint64_t largest = 0;
  for (const RecordRef element : geometry) {
    if (element.Name() != "LayerElementUV" && element.Name() != "GeometryUVInfo") continue;
    uint64_t bytes = 0;
    for (const RecordRef array : element) {
      const std::string_view name = array.Name();
      if (name == "UV" || name == "TextureUV") bytes += 8 * ClaimedCount(array);
      if (name == "UVIndex" || name == "TextureUVVerticeIndex") bytes += 4 * ClaimedCount(array);
    }
    largest = std::max(largest, bytes);
  }
  return largest;
}

}  // namespace

KFbxMeshClaim KFbxMesh::GetClaim() const {
  KFbxMeshClaim claim;
  claim.bytes = 8 * ClaimedCount(geometry_.Child("Vertices"));
  // Corners become triangles, which count as much again.
  claim.bytes += 8 * ClaimedCount(geometry_.Child("PolygonVertexIndex"));
  claim.bytes += 4 * ClaimedCount(FindMaterials().index) + LargestCoordinates(geometry_);
  uint64_t clusterCount = 0, allShapes = 0, largestShape = 0;
  for (const KFbxSkin* skin : skins_) {
    for (int i = 0; i < skin->GetClusterCount(); ++i, ++clusterCount)
      claim.bytes += skin->GetCluster(i)->GetClaim();
  }
  for (const KFbxShape& shape : shapes_) {
    allShapes += shape.GetClaim();
    largestShape = std::max(largestShape, shape.GetClaim());
  }
  claim.work = claim.bytes + allShapes + kRecordWork * geometry_.CountBelow() + kClusterWork * clusterCount;
  claim.bytes += largestShape;
  return claim;
}

}  // namespace scene
