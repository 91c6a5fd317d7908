// SPDX-License-Identifier: MIT
#include "mesh/convert_mesh.h"

#include <algorithm>

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

void CheckMaterialReference(KFbxMesh& mesh, int materialCount, ConversionJob& job) {
  const scene::KFbxLayerElementMaterial* materials = mesh.GetMaterials();
  if (materialCount < 2 || !materials || job.materialReferenceReported) return;
  if (materials->GetReferenceMode() != scene::EReferenceMode::eDIRECT) return;
  job.materialReferenceReported = true;
  DebugTrace("material element with direct reference");
}

/// @return the names of the files
std::vector<std::string> WriteSlices(const std::string& name, int materialCount, KFbxMesh& mesh,
                                     const MeshData& data, TextureCoordinates& coordinates,
                                     ConversionJob& job, ActorPackage& package) {
  CheckMaterialReference(mesh, materialCount, job);
  MaterialSlices slices(mesh, data, materialCount);
  std::vector<std::string> files;
  std::vector<int32_t> outputIndex(materialCount < 2 ? 0 : data.records.size(), -1);
  for (int material = 0; material < std::max(materialCount, 1); ++material) {
    const MeshSlice slice = slices.Slice(name, material);
    if ((!slice.whole && slice.triangles.empty()) || IsExcluded(slice.name, job)) continue;
    job.status.Send(Notice::WritingMesh, slice.name);
    if (slices.DegenerateCount() > 0) {
      job.status.Send(Notice::DegenerateRemoved, std::to_string(slices.DegenerateCount()));
    }
    WriteCmfFile(slice, data, coordinates, outputIndex, job, package);
    files.push_back(slice.name);
  }
  return files;
}

void WriteMaterials(const std::string& name, const KFbxNode& node, bool hasMap, ConversionJob& job,
                    ActorPackage& package) {
  for (int material = 0; material < node.GetMaterialCount(); ++material) {
    WriteMaterial(SliceName(name, material), *node.GetMaterial(material), hasMap, job, package);
  }
  if (node.GetMaterialCount() == 0) WriteDefaultMaterial(name, hasMap, job);
}

}  // namespace

void ConvertMeshNode(const KFbxNode& node, ConversionJob& job, ActorPackage& package) {
  const std::string name = SanitizeMeshName(node.GetName());
  KFbxMesh* mesh = node.GetMesh();
  if (skipThisMesh(name, job) || !mesh || mesh->GetControlPointsCount() == 0) return;

  const MeshData data = PrepareMesh(node, name, job);
  job.status.Send(Notice::WritingMeshHeader);
  TextureCoordinates coordinates(node, mesh->GetUVs(), job);
  std::vector<std::string> files =
      WriteSlices(name, node.GetMaterialCount(), *mesh, data, coordinates, job, package);
  WriteMaterials(name, node, coordinates.FoundAny(), job, package);
  if (job.onMesh) job.onMesh({node, data, std::move(files)});
  mesh->ReleaseArrays();
}

}  // namespace ts3d
