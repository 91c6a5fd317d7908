// SPDX-License-Identifier: MIT
#include "support/check_scene.h"

#include <gtest/gtest.h>

#include <cmath>

#include "scene/geometry/triangulate.h"
#include "scene/geometry/vertex_normals.h"
#include "scene/model/mesh.h"

namespace support {
namespace {

void CheckMesh(scene::KFbxMesh& mesh) {
  const std::span<const double> points = mesh.GetControlPoints();
  ASSERT_EQ(points.size(), 3 * static_cast<size_t>(mesh.GetControlPointsCount()));
  for (const double value : points) EXPECT_TRUE(std::isfinite(value));
  const std::span<const int32_t> corners = mesh.GetPolygonVertices();
  size_t triangleCount = 0;
  for (uint32_t i = 0; i < mesh.GetPolygons().Count(); ++i) {
    const scene::KFbxPolygon polygon = mesh.GetPolygons()[i];
    ASSERT_GE(polygon.size, 1u);
    ASSERT_LE(polygon.firstCorner + polygon.size, corners.size());
    if (polygon.size > 2) triangleCount += polygon.size - 2;
    for (const int32_t corner : corners.subspan(polygon.firstCorner, polygon.size)) {
      EXPECT_GE(corner, 0);
      EXPECT_LT(corner, mesh.GetControlPointsCount());
    }
  }
  const scene::KFbxTriangles triangles = TriangulateMesh(mesh);
  EXPECT_EQ(triangles.Count(), triangleCount);
  EXPECT_EQ(scene::ComputeVertexNormals(points, triangles.corners.View(), false).size(), points.size());
  if (const scene::KFbxLayerElementUV* uvs = mesh.GetUVs()) {
    for (size_t i = 0; i < triangles.corners.size(); ++i) {
      const int32_t index = uvs->GetLookup()(triangles.SourceCorner(i), triangles.corners[i]);
      EXPECT_GE(index, -1);
      EXPECT_LT(index, uvs->GetCoordinateCount());
    }
  }
  for (int s = 0; s < mesh.GetSkinCount(); ++s) {
    for (int c = 0; c < mesh.GetSkin(s)->GetClusterCount(); ++c) {
      const scene::KFbxCluster& cluster = *mesh.GetSkin(s)->GetCluster(c);
      EXPECT_EQ(cluster.GetControlPointIndices().size(), cluster.GetControlPointWeights().size());
    }
  }
  std::vector<double> deformed(points.begin(), points.end());
  for (const scene::KFbxShape& shape : mesh.GetShapes()) ApplyShape(shape, deformed);
}

}  // namespace

void CheckScene(scene::KFbxScene& scene) {
  ASSERT_NE(scene.GetRootNode(), nullptr);
  scene.ForEach<scene::KFbxNode>([&](const scene::KFbxNode& node) {
    for (int i = 0; i < node.GetChildCount(); ++i) EXPECT_EQ(node.GetChild(i)->GetParent(), &node);
    for (int i = 0; i < node.GetMaterialCount(); ++i) EXPECT_NE(node.GetMaterial(i), nullptr);
  });
  scene.ForEach<scene::KFbxMesh>(CheckMesh);
  for (int i = 0; i < scene.GetPoseCount(); ++i) EXPECT_GE(scene.GetPose(i)->GetCount(), 0);
}

}  // namespace support
