// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mesh/split_vertices.h"
#include "scene/geometry/triangulate.h"
#include "scene/model/mesh.h"
#include "support/character.h"
#include "support/load_scene.h"
#include "support/test_host.h"

namespace {

using support::Character;
using support::FbxFile;
using testing::ElementsAre;

struct SplitMesh {
  std::vector<int32_t> corners;
  std::vector<std::pair<int32_t, int32_t>> records;  ///< control point and coordinate
};

/// A fan of triangles around point 0, split by the coordinate numbers of its corners.
SplitMesh SplitFan(const std::vector<double>& coordinates) {
  FbxFile file;
  std::vector<double> polygons;
  for (size_t i = 0; i < coordinates.size() / 3; ++i) {
    const auto point = static_cast<double>(i) + 1;
    polygons.insert(polygons.end(), {0, point, -(point + 2)});
  }
  file.Model(1, "fan");
  Character::Coordinates({1, &file.Mesh(2, std::vector<double>(18), polygons), 2}, std::vector<double>(20),
                         coordinates);
  file.Connect(1, 0);
  file.Connect(2, 1);
  const auto scene = support::LoadScene(file);
  scene::KFbxMesh& mesh = *scene->GetRootNode()->GetChild(0)->GetMesh();
  scene::KFbxTriangles triangles = TriangulateMesh(mesh);
  SplitMesh split;
  for (const ts3d::FullPointData& record : ts3d::SplitVertices(6, mesh.GetUVs(), triangles)) {
    split.records.emplace_back(record.controlPoint, record.textureIndex);
    if (record.textureIndex != -1) {
      EXPECT_EQ(record.influenceList, record.controlPoint);
    }
  }
  split.corners.assign(triangles.corners.begin(), triangles.corners.end());
  const size_t further = split.records.size() - 6;
  triangles = TriangulateMesh(mesh);
  EXPECT_NO_THROW(ts3d::SplitVertices(6, mesh.GetUVs(), triangles, further));
  triangles = TriangulateMesh(mesh);
  if (further > 0) {
    EXPECT_THROW(ts3d::SplitVertices(6, mesh.GetUVs(), triangles, further - 1), scene::KFbxMeshExcess);
  }
  return split;
}

TEST(VertexSplit, MakesOneMoreRecordForEachFurtherCoordinateOfAPoint) {
  struct {
    std::vector<double> coordinates;
    std::vector<int32_t> corners;
    std::pair<int32_t, int32_t> first;
    std::vector<std::pair<int32_t, int32_t>> added;
  } const cases[] = {
      {{0, 1, 2, 0, 2, 3}, {0, 1, 2, 0, 2, 3}, {0, 0}, {}},
      {{0, 1, 2, 9, 2, 3}, {0, 1, 2, 6, 2, 3}, {0, 0}, {{0, 9}}},
      {{0, 1, 2, 9, 2, 3, 8, 3, 4, 9, 4, 5}, {0, 1, 2, 6, 2, 3, 7, 3, 4, 6, 4, 5}, {0, 0}, {{0, 9}, {0, 8}}},
      // A point takes the first coordinate that follows corners without; such corners move when more come.
      {{-1, 1, 2, 7, 2, 3}, {0, 1, 2, 0, 2, 3}, {0, 7}, {}},
      {{-1, 1, 2, 7, 2, 3, -1, 3, 4}, {6, 1, 2, 0, 2, 3, 6, 3, 4}, {0, 7}, {{0, -1}}}};
  for (const auto& [coordinates, corners, first, added] : cases) {
    const SplitMesh split = SplitFan(coordinates);
    EXPECT_EQ(split.corners, corners);
    ASSERT_EQ(split.records.size(), 6 + added.size());
    EXPECT_EQ(split.records[0], first);
    EXPECT_EQ(split.records[2], std::pair(2, 2));
    for (size_t i = 0; i < added.size(); ++i) EXPECT_EQ(split.records[6 + i], added[i]);
  }
}

TEST(VertexSplit, GivesSplitVerticesThePositionNormalAndWeightsOfTheirPoint) {
  Character model;
  const auto bone = model.Bone("root"), tip = model.Bone("tip", bone);
  auto mesh = model.Mesh("Body", {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, {0, 1, -3, 0, 2, -4});
  Character::Coordinates(mesh, {0, 0, 0.5, 0.25, 1, 1}, {0, 0, 0, 1, 2, 0});
  model.Weights(mesh, tip, {0, 1, 2, 3}, {1, 1, 1, 1});
  support::TestHost host(model);
  const support::CmfMesh cmf = host.Mesh("Body");
  ASSERT_EQ(cmf.vertices.size(), 6u);
  EXPECT_EQ(cmf.vertices[4].u, 0.5f);
  EXPECT_EQ(cmf.vertices[4].v, 0.75f);
  EXPECT_THAT(cmf.vertices[5].position, ElementsAre(1, 1, 0));
  EXPECT_THAT(cmf.vertices[5].normal, ElementsAre(0, 0, 1));
  EXPECT_THAT(cmf.vertices[5].influences, ElementsAre(std::pair(1, 1.0f)));
  EXPECT_THAT(cmf.faces[1], ElementsAre(4, 5, 3));
  EXPECT_EQ(host.job.vertexTotal, 4);
  EXPECT_EQ(host.job.polygonTotal, 2);
}

}  // namespace
