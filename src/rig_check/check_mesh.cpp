// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "core/mesh_filter.h"
#include "core/names.h"
#include "material/diffuse_texture.h"
#include "mesh/material_slices.h"
#include "mesh/prepare_mesh.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_check.h"
#include "scene/model/node.h"

namespace ts3d {
namespace {

using scene::KFbxMesh;
using scene::KFbxNode;

/// Checks one mesh that is converted.
class MeshCheck {
 public:
  MeshCheck(KFbxNode& node, std::string name, RigCheck& check)
      : node_(node), mesh_(*node.GetMesh()), name_(std::move(name)), check_(check) {}

  void Run() {
    CheckSkins(node_, mesh_, check_);
    if (!mesh_.GetShapes().empty()) Tell(findings::kShapes, mesh_.GetShapes().size());
    check_.notices.Clear();
    const MeshData data = PrepareMesh(node_, name_, check_.Model(), check_.skeleton, {});
    const auto pointCount = static_cast<size_t>(mesh_.GetControlPointsCount());
    CheckWeights(node_, data, pointCount, check_);
    TellGeometry(data, pointCount);
    const std::vector<MeshSlice> slices = Slices(data);
    const bool hasMap = FindCoordinates(data, slices);
    TellCoordinates(hasMap);
    check_.faults.Take({node_, data, AddOutputs(data, slices, hasMap)}, check_.skeleton);
    mesh_.ReleaseArrays();
  }

 private:
  void Tell(const FindingKind& kind, size_t count) {
    if (count > 0) check_.report.Add(kind, node_.GetName(), {std::to_string(count)});
  }

  void TellGeometry(const MeshData& data, size_t pointCount) {
    size_t loose = 0, bad = 0;
    for (size_t i = 0; i < pointCount; ++i) {
      loose += data.records[i].influenceList == -1;
      const double* p = &data.points[3 * i];
      bad += !(std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]));
    }
    if (data.triangles.Count() == 0) {
      check_.report.Add(findings::kNoTriangles, node_.GetName());
    } else if (loose > 0) {
      check_.report.Add(findings::kLoosePoints, node_.GetName(),
                        {std::to_string(loose), std::to_string(pointCount)});
    }
    Tell(findings::kBadPoints, bad);
    Tell(findings::kDroppedPolygons, mesh_.GetPolygonCounts().dropped);
  }

  std::vector<MeshSlice> Slices(const MeshData& data) {
    MaterialSlices cut(mesh_, data, node_.GetMaterialCount());
    std::vector<MeshSlice> slices;
    size_t inSlices = 0;
    for (int i = 0; i < std::max(node_.GetMaterialCount(), 1); ++i) {
      slices.push_back(cut.Slice(name_, i));
      inSlices += slices.back().FaceCount(data);
    }
    const auto degenerate = static_cast<size_t>(cut.DegenerateCount());
    Tell(findings::kDegenerate, degenerate);
    Tell(findings::kNoMaterialTriangles, data.triangles.Count() - inSlices - degenerate);
    return slices;
  }

  /// Looks up all texture coordinates as the mesh files get them. @return whether there are any
  bool FindCoordinates(const MeshData& data, const std::vector<MeshSlice>& slices) {
    const KFbxNode* errorNode = nullptr;
    TextureCoordinates coordinates(node_, mesh_.GetUVs(), check_.status, errorNode);
    // Points without faces have none, which is no news: they come first, and what is said of them is dropped.
    for (const bool loose : {true, false}) {
      check_.notices.Clear();
      for (const MeshSlice& slice : slices) {
        for (size_t i = 0; i < slice.VertexCount(data); ++i) {
          const size_t record = slice.whole ? i : static_cast<size_t>(slice.records[i]);
          if ((data.records[record].influenceList == -1) == loose)
            coordinates.Of(record, data.records[record]);
        }
      }
    }
    return coordinates.FoundAny();
  }

  void TellCoordinates(bool hasMap) {
    if (hasMap) {
      Tell(findings::kMissingCoordinates, check_.notices.Count(Notice::MissingCoordinates));
      return;
    }
    for (int i = 0; i < node_.GetMaterialCount(); ++i) {
      const scene::KFbxSurfaceMaterial& material = *node_.GetMaterial(i);
      if (DiffuseTexture(material, check_.settings)) {
        return check_.report.Add(findings::kTextureUnused, node_.GetName(), {material.GetName()});
      }
    }
    check_.report.Add(findings::kNoCoordinates, node_.GetName());
  }

  /// @return names of the mesh files
  std::vector<std::string> AddOutputs(const MeshData& data, const std::vector<MeshSlice>& slices,
                                      bool hasMap) {
    std::vector<std::string> files;
    if (node_.GetMaterialCount() == 0) check_.report.Add(findings::kNoMaterial, node_.GetName());
    for (size_t i = 0; i < slices.size(); ++i) {
      const MeshSlice& slice = slices[i];
      const bool written = slice.whole || !slice.triangles.empty();
      check_.slots.push_back({slice.name, node_.GetName(), written});
      if (IsExcluded(slice.name, check_.Filter())) continue;
      OutputMesh output{slice.name, node_.GetName(), {}, {}, slice.VertexCount(data), slice.FaceCount(data)};
      if (node_.GetMaterialCount() > 0) {
        const scene::KFbxSurfaceMaterial& material = *node_.GetMaterial(static_cast<int>(i));
        output.material = material.GetName();
        output.texture = CheckMaterial(material, hasMap, check_);
      }
      if (!written) continue;
      files.push_back(slice.name);
      check_.report.meshes.push_back(std::move(output));
    }
    return files;
  }

  KFbxNode& node_;
  KFbxMesh& mesh_;
  const std::string name_;
  RigCheck& check_;
};

}  // namespace

void CheckMeshNode(KFbxNode& node, RigCheck& check) {
  const std::string name = SanitizeMeshName(node.GetName());
  if (skipThisMesh(name, check.Filter())) {
    check.report.Add(IsExcluded(name, check.Filter()) ? findings::kExcluded : findings::kHeadPart,
                     node.GetName());
    return;
  }
  const KFbxMesh* mesh = node.GetMesh();
  if (!mesh || mesh->GetControlPointsCount() == 0) {
    check.report.Add(findings::kEmptyMesh, node.GetName());
    return;
  }
  MeshCheck(node, name, check).Run();
}

}  // namespace ts3d
