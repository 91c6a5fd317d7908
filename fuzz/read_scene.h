// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mesh/claims/weigh_claims.h"
#include "scene/geometry/triangulate.h"
#include "scene/geometry/vertex_normals.h"
#include "scene/model/mesh.h"
#include "scene/model/scene.h"
#include "scene/model/texture.h"
#include "scene/readers/embedded_files.h"

namespace fuzz {

inline void ReadMesh(scene::KFbxMesh& mesh) {
  const std::span<const double> source = mesh.GetControlPoints();
  std::vector<double> points(source.begin(), source.end());
  for (const scene::KFbxShape& shape : mesh.GetShapes()) ApplyShape(shape, points);
  const scene::KFbxTriangles triangles = TriangulateMesh(mesh);
  scene::ComputeVertexNormals(points, triangles.corners.View(), false);
  const scene::KFbxLayerElementUV* uvs = mesh.GetUVs();
  for (size_t i = 0; uvs && i < triangles.corners.size(); ++i) {
    uvs->GetLookup()(triangles.SourceCorner(i), triangles.corners[i]);
  }
  for (int s = 0; s < mesh.GetSkinCount(); ++s) {
    for (int c = 0; c < mesh.GetSkin(s)->GetClusterCount(); ++c) {
      mesh.GetSkin(s)->GetCluster(c)->GetControlPointWeights();
      mesh.GetSkin(s)->GetCluster(c)->GetTransformMatrix();
    }
  }
}

/// Reads everything that a conversion reads of a scene, unless it is refused.
inline void ReadScene(scene::KFbxScene& loaded) {
  if (!ts3d::WeighClaims(loaded).empty()) return;
  ExtractEmbeddedFiles(loaded, "", false);
  loaded.ForEach<scene::KFbxMesh>([](scene::KFbxMesh& mesh) {
    try {
      ReadMesh(mesh);
    } catch (const scene::KFbxMeshExcess&) {
      // What arrays hold may ask for more than is allowed.
    }
  });
  loaded.ForEach<scene::KFbxNode>([](scene::KFbxNode& node) { node.GetLocalFromDefaultTake().GetR(); });
  loaded.ForEach<scene::KFbxVideo>([](scene::KFbxVideo& video) { video.ReadContent(); });
}

}  // namespace fuzz
