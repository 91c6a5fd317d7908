// SPDX-License-Identifier: MIT
#include "mesh/prepare_mesh.h"

#include <algorithm>
#include <limits>

#include "core/names.h"
#include "material/diffuse_texture.h"
#include "mesh/claims/mesh_cost.h"
#include "mesh/pose_deform.h"
#include "mesh/split_vertices.h"
#include "scene/geometry/vertex_normals.h"
#include "scene/model/mesh.h"
#include "scene/model/scene.h"
#include "skeleton/rigid_meshes.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

using scene::KFbxMesh;
using scene::KFbxNode;

bool HasOtherThanTriangles(const KFbxMesh& mesh) {
  const scene::KFbxPolygonTable& polygons = mesh.GetPolygons();
  if (polygons.IsPlainTriangles()) return false;
  for (uint32_t i = 0; i < polygons.Count(); ++i) {
    if (polygons[i].size != 3) return true;
  }
  return false;
}

scene::KFbxTriangles Triangulate(KFbxMesh& mesh, const std::string& name, const StatusChannel& status) {
  if (const uint32_t dropped = mesh.GetPolygonCounts().dropped; dropped > 0) {
    status.Send(Notice::PolygonsLeftOut, std::to_string(dropped), name);
  }
  if (HasOtherThanTriangles(mesh)) status.Send(Notice::Triangulated, name);
  scene::KFbxTriangles triangles = TriangulateMesh(mesh);
  mesh.ReleaseCorners();
  return triangles;
}

/// Whether the normals of the mesh `name` are to point inward.
bool TurnsNormals(const std::string& name, const MeshOptions& options) {
  if (options.list.empty()) return options.mode == 1;
  const std::vector<std::string_view> entries = SplitList(options.list);
  const bool listed = std::any_of(entries.begin(), entries.end(),
                                  [&](std::string_view entry) { return EqualsIgnoreCase(entry, name); });
  return (options.mode == 2) == listed;
}

/// Splits the vertices of `data`, as far as the mesh may take memory for it.
/// @throws scene::KFbxMeshExcess
void Split(KFbxMesh& mesh, MeshData& data) {
  // A list that grows is in memory twice for a moment. A further record has a place in a table besides.
  constexpr uint64_t kRecord = 2 * sizeof(FullPointData), kFurtherRecord = kRecord + 24;
  const scene::KFbxLayerElementUV* uvs = mesh.GetUVs();
  if (uvs && uvs->GetCoordinateCount() == 0) uvs = nullptr;
  const auto pointCount = static_cast<uint64_t>(mesh.GetControlPointsCount());
  uint64_t taken = sizeof(double) * data.points.size() + sizeof(float) * data.normals.size() +
                   sizeof(int32_t) * (data.triangles.corners.size() + data.triangles.sourceCorners.size()) +
                   sizeof(BoneWeight) * data.influences.Count() + (sizeof(uint32_t) + kRecord) * pointCount;
  if (uvs)
    taken += sizeof(double) * uvs->GetDirectArray().size() + sizeof(int32_t) * uvs->GetIndexArray().size();
  const uint64_t room =
      std::min<uint64_t>(MemoryLeftBeside(mesh, taken) / kFurtherRecord, std::numeric_limits<size_t>::max());
  data.records = SplitVertices(mesh.GetControlPointsCount(), uvs, data.triangles, static_cast<size_t>(room));
  data.triangles.sourceCorners.Release();
  if (uvs && uvs->GetMappingMode() == scene::EMappingMode::eBY_POLYGON_VERTEX) mesh.ReleaseUVIndices();
}

/// The file has room for one set of texture coordinates: that of layer 0, unless all diffuse pictures of the
/// mesh are made for another one.
void SelectDiffuseUVSet(const KFbxNode& node, KFbxMesh& mesh, const Settings& settings) {
  const scene::KFbxTexture* first = nullptr;
  for (int i = 0; i < node.GetMaterialCount(); ++i) {
    const scene::KFbxTexture* texture = DiffuseTexture(*node.GetMaterial(i), settings);
    if (!first) first = texture;
    if (texture && texture->GetUVSet() != first->GetUVSet()) return mesh.SelectUVSet({});
  }
  mesh.SelectUVSet(first ? first->GetUVSet() : scene::KString());
}

}  // namespace

MeshData PrepareMesh(KFbxNode& node, const std::string& name, const ModelSource& model,
                     SkeletonState& skeleton, const MeshOptions& options) {
  KFbxMesh& mesh = *node.GetMesh();
  MeshData data;
  const bool followsBoneAbove = model.settings.repairs.attachRigid && !HasSkin(mesh);
  data.influences =
      followsBoneAbove ? WholeWeightOnBoneAbove(node, skeleton) : GatherBoneInfluences(mesh, model, skeleton);
  data.triangles = Triangulate(mesh, name, model.status);
  // Only slices ask which polygon a triangle is from.
  if (node.GetMaterialCount() < 2) {
    data.triangles.polygons.Release();
    mesh.ReleasePolygons();
  }
  data.points = PoseControlPoints(node, model, skeleton);
  data.normals = scene::ComputeVertexNormals(data.points.View(), data.triangles.corners.View(),
                                             TurnsNormals(name, options));
  model.status.Send(Notice::NormalsRecreated);
  for (size_t i = 0; i + 2 < data.normals.size(); i += 3) {
    // A point without a direction gets the diagonal, as a normal must have a length.
    if (data.normals[i] == 0.0f && data.normals[i + 1] == 0.0f && data.normals[i + 2] == 0.0f) {
      data.normals[i] = data.normals[i + 1] = data.normals[i + 2] = static_cast<float>(0.57734998);
    }
  }
  SelectDiffuseUVSet(node, mesh, model.settings);
  Split(mesh, data);
  return data;
}

}  // namespace ts3d
