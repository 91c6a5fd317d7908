// SPDX-License-Identifier: MIT
#include "mesh/convert_mesh.h"

#include <algorithm>
#include <limits>

#include "core/mesh_filter.h"
#include "core/names.h"
#include "core/trace.h"
#include "material/extract_material.h"
#include "mesh/cmf_writer.h"
#include "mesh/converted_mesh.h"
#include "mesh/material_slices.h"
#include "mesh/prepare_mesh.h"
#include "scene/model/mesh.h"
#include "scene/model/scene.h"

namespace ts3d {
namespace {

using scene::KFbxMesh;
using scene::KFbxNode;

/// Totals stay at the largest number that hosts can take.
int32_t AddUp(int32_t total, size_t count) {
  constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
  return count > static_cast<size_t>(kMost - total) ? kMost : total + static_cast<int32_t>(count);
}

void CheckMaterialReference(const KFbxMesh& mesh, int materialCount, MeshRun& run) {
  const scene::KFbxLayerElementMaterial* materials = mesh.GetMaterials();
  if (materialCount < 2 || !materials || run.materialReferenceReported) return;
  if (materials->GetReferenceMode() != scene::EReferenceMode::eDIRECT) return;
  run.materialReferenceReported = true;
  DebugTrace("material element with direct reference");
}

/// @return the names of the files
std::vector<std::string> WriteSlices(const std::string& name, int materialCount, const KFbxMesh& mesh,
                                     const MeshData& data, TextureCoordinates& coordinates, MeshRun& run) {
  CheckMaterialReference(mesh, materialCount, run);
  MaterialSlices slices(mesh, data, materialCount);
  std::vector<std::string> files;
  std::vector<int32_t> outputIndex(materialCount < 2 ? 0 : data.records.size(), -1);
  for (int material = 0; material < std::max(materialCount, 1); ++material) {
    const MeshSlice slice = slices.Slice(name, material);
    if ((!slice.whole && slice.triangles.empty()) || IsExcluded(slice.name, run.out.filter)) continue;
    run.out.status.Send(Notice::WritingMesh, slice.name);
    if (slices.DegenerateCount() > 0) {
      run.out.status.Send(Notice::DegenerateRemoved, std::to_string(slices.DegenerateCount()));
    }
    WriteCmfFile(slice, data, coordinates, outputIndex, run.skeleton.bones, run.nextThreadId++,
                 {run.out.files, run.out.package, run.out.status});
    files.push_back(slice.name);
  }
  return files;
}

void WriteMaterials(const std::string& name, const KFbxNode& node, bool hasMap, MaterialOutput& out) {
  for (int material = 0; material < node.GetMaterialCount(); ++material) {
    WriteMaterial(SliceName(name, material), *node.GetMaterial(material), hasMap, out);
  }
  if (node.GetMaterialCount() == 0) WriteDefaultMaterial(name, hasMap, out);
}

}  // namespace

void ConvertMeshNode(KFbxNode& node, MeshRun& run) {
  const std::string name = SanitizeMeshName(node.GetName());
  KFbxMesh* mesh = node.GetMesh();
  if (skipThisMesh(name, run.out.filter) || !mesh || mesh->GetControlPointsCount() == 0) return;

  const MeshData data = PrepareMesh(node, name, run.model, run.skeleton, run.options);
  run.vertexTotal = AddUp(run.vertexTotal, static_cast<size_t>(mesh->GetControlPointsCount()));
  run.polygonTotal = AddUp(run.polygonTotal, data.triangles.Count());
  run.out.status.Send(Notice::WritingMeshHeader);
  TextureCoordinates coordinates(node, mesh->GetUVs(), run.out.status, run.textureErrorNode);
  std::vector<std::string> files = WriteSlices(name, node.GetMaterialCount(), *mesh, data, coordinates, run);
  WriteMaterials(name, node, coordinates.FoundAny(), run.out);
  if (run.onMesh) run.onMesh({node, data, std::move(files)});
  mesh->ReleaseArrays();
}

}  // namespace ts3d
