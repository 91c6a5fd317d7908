// SPDX-License-Identifier: MIT
#include <algorithm>

#include "scene/model/mesh.h"

namespace scene {
namespace {

/// Bytes of the numbers of `array`, each of which takes `size`. Those of another type are in memory twice.
uint64_t Unpacked(RecordRef array, size_t size) {
  const Value* first = array.ValueAt(0);
  const bool isConverted =
      first && first->kind == Value::Kind::Array && first->element != (size == sizeof(double) ? 'd' : 'i');
  return ClaimedCount(array) * (size + (isConverted ? ArrayElementSize(first->element) : 0));
}

/// Of several sets of coordinates one is in memory at a time.
uint64_t LargestCoordinates(RecordRef geometry) {
  uint64_t largest = 0;
  for (const RecordRef element : geometry) {
    if (element.Name() != "LayerElementUV" && element.Name() != "GeometryUVInfo") continue;
    uint64_t bytes = 0;
    for (const RecordRef array : element) {
      const std::string_view name = array.Name();
      if (name == "UV" || name == "TextureUV") bytes += Unpacked(array, sizeof(double));
      if (name == "UVIndex" || name == "TextureUVVerticeIndex") bytes += Unpacked(array, sizeof(int32_t));
    }
    largest = std::max(largest, bytes);
  }
  return largest;
}

}  // namespace

KFbxMeshClaim KFbxMesh::GetClaim() const {
  KFbxMeshClaim claim;
  claim.pointNumbers = ClaimedCount(geometry_.Child("Vertices"));
  claim.corners = ClaimedCount(geometry_.Child("PolygonVertexIndex"));
  claim.materialBytes = Unpacked(FindMaterials().index, sizeof(int32_t));
  claim.coordinateBytes = LargestCoordinates(geometry_);
  for (const KFbxSkin* skin : skins_) {
    for (int i = 0; i < skin->GetClusterCount(); ++i, ++claim.clusters)
      claim.clusterBytes += skin->GetCluster(i)->GetClaim();
  }
  for (const KFbxShape& shape : shapes_) {
    claim.shapeBytes += shape.GetClaim();
    claim.largestShapeBytes = std::max(claim.largestShapeBytes, shape.GetClaim());
  }
  claim.records = geometry_.CountBelow();
  return claim;
}

uint64_t KFbxMesh::GetMemoryLeft() const {
  const KFbxPolygonTable* polygons = polygons_.Known();
  return memoryRoom_ - std::min(memoryRoom_, polygons ? polygons->Memory() : 0);
}

}  // namespace scene
