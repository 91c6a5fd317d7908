// SPDX-License-Identifier: MIT
#include "mesh/claims/mesh_cost.h"

#include <algorithm>

namespace ts3d {
namespace {

constexpr uint64_t kRecordWork = 64;    ///< searching among the records of a mesh
constexpr uint64_t kClusterWork = 512;  ///< a few matrix products

// Bytes in memory for each number of an array, at the step of a conversion that takes most of it.
constexpr uint64_t kPointMemory = 20;   ///< points twice, normals, records, sums of weights
constexpr uint64_t kCornerMemory = 8;   ///< the file's corners and those of the triangles
constexpr uint64_t kClusterMemory = 2;  ///< for each byte of its arrays: these and the bones of each point

/// The program itself, its libraries and the objects of a small scene.
constexpr uint64_t kProgramMemory = 24 << 20;

/// Memory of the file and its records.
uint64_t FileMemory(const scene::RecordTree& tree) { return tree.FileSize() + tree.RecordMemory(); }

uint64_t Remainder(uint64_t whole, uint64_t part) { return whole - std::min(whole, part); }

}  // namespace

MeshCost CostOf(const scene::KFbxMeshClaim& claim) {
  const uint64_t others = claim.materialBytes + claim.coordinateBytes;
  return {kPointMemory * claim.pointNumbers + kCornerMemory * claim.corners + others +
              kClusterMemory * claim.clusterBytes + claim.largestShapeBytes,
          8 * claim.pointNumbers + 8 * claim.corners + others + claim.clusterBytes + claim.shapeBytes +
              kRecordWork * claim.records + kClusterWork * claim.clusters};
}

uint64_t MemoryLimit(const scene::KFbxMesh& mesh) {
  if (!mesh.GetRecord()) return UINT64_MAX;
  const scene::RecordTree& tree = mesh.GetRecord().Tree();
  const uint64_t allowance = tree.MemoryAllowance();
  // A third is for the file, its objects and the program itself; many records take more than that.
  return Remainder(allowance, std::max(allowance / 3, FileMemory(tree)));
}

uint64_t MemoryLeftBeside(const scene::KFbxMesh& mesh, uint64_t taken) {
  if (!mesh.GetRecord()) return UINT64_MAX;
  const scene::RecordTree& tree = mesh.GetRecord().Tree();
  return Remainder(tree.MemoryAllowance(), taken + FileMemory(tree) + kProgramMemory);
}

}  // namespace ts3d
