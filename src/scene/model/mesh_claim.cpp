// SPDX-License-Identifier: MIT
#include <algorithm>

#include "scene/model/mesh.h"

namespace scene {
namespace {

constexpr uint64_t kRecordWork = 64;    ///< searching among the records of a mesh
constexpr uint64_t kClusterWork = 512;  ///< a few matrix products

// Bytes in memory for each number of an array, at the step of a conversion that takes most of it.
constexpr uint64_t kPointMemory = 20;   ///< points twice, normals, records, sums of weights
constexpr uint64_t kCornerMemory = 8;   ///< the file's corners and those of the triangles
constexpr uint64_t kClusterMemory = 2;  ///< for each byte of its arrays: these and the bones of each point

/// The program itself, its libraries and the objects of a small scene.
constexpr uint64_t kProgramMemory = 24 << 20;

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

const KFbxMeshClaim& KFbxMesh::GetClaim() const {
  return claim_.Get([this] { return MakeClaim(); });
}

KFbxMeshClaim KFbxMesh::MakeClaim() const {
  const uint64_t pointNumbers = ClaimedCount(geometry_.Child("Vertices"));
  const RecordRef corners = geometry_.Child("PolygonVertexIndex");
  const uint64_t others = Unpacked(FindMaterials().index, sizeof(int32_t)) + LargestCoordinates(geometry_);
  uint64_t clusters = 0, clusterCount = 0, allShapes = 0, largestShape = 0;
  for (const KFbxSkin* skin : skins_) {
    for (int i = 0; i < skin->GetClusterCount(); ++i, ++clusterCount)
      clusters += skin->GetCluster(i)->GetClaim();
  }
  for (const KFbxShape& shape : shapes_) {
    allShapes += shape.GetClaim();
    largestShape = std::max(largestShape, shape.GetClaim());
  }
  KFbxMeshClaim claim;
  claim.memory = kPointMemory * pointNumbers + kCornerMemory * ClaimedCount(corners) + others +
                 kClusterMemory * clusters + largestShape;
  claim.work = 8 * pointNumbers + 8 * ClaimedCount(corners) + others + clusters + allShapes +
               kRecordWork * geometry_.CountBelow() + kClusterWork * clusterCount;
  return claim;
}

uint64_t KFbxMesh::GetMemoryLimit() const {
  if (!geometry_) return UINT64_MAX;
  const RecordTree& tree = geometry_.Tree();
  const uint64_t allowance = tree.MemoryAllowance();
  // A third is for the file, its objects and the program itself; many records take more than that.
  const uint64_t others = std::max(allowance / 3, tree.FileSize() + tree.RecordMemory());
  return allowance - std::min(allowance, others);
}

uint64_t KFbxMesh::GetMemoryLeftBeside(uint64_t taken) const {
  if (!geometry_) return UINT64_MAX;
  const RecordTree& tree = geometry_.Tree();
  const uint64_t allowance = tree.MemoryAllowance();
  return allowance - std::min(allowance, taken + tree.FileSize() + tree.RecordMemory() + kProgramMemory);
}

uint64_t KFbxMesh::GetMemoryLeft() const {
  const KFbxPolygonTable* polygons = polygons_.Known();
  const uint64_t taken = GetClaim().memory + (polygons ? polygons->Memory() : 0);
  return GetMemoryLimit() - std::min(GetMemoryLimit(), taken);
}

}  // namespace scene
