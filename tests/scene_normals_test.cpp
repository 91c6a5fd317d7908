// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/geometry/vertex_normals.h"

namespace {

using scene::ComputeVertexNormals;
using testing::ElementsAre;
using testing::FloatNear;

/// Normal of one point of a mesh.
std::vector<float> NormalAt(size_t point, const std::vector<double>& points,
                            const std::vector<int32_t>& triangles, bool clockwise = false) {
  const std::vector<float> normals = ComputeVertexNormals(points, triangles, clockwise);
  return {normals[3 * point], normals[3 * point + 1], normals[3 * point + 2]};
}

testing::Matcher<std::vector<float>> NearNormal(float x, float y, float z) {
  return ElementsAre(FloatNear(x, 1e-5f), FloatNear(y, 1e-5f), FloatNear(z, 1e-5f));
}

// A cube from -1 to 1: bit 0 of a point's number is x, bit 1 y, bit 2 z. Diagonals are drawn at random.
const std::vector<double> kCube = {-1, -1, -1, 1, -1, -1, -1, 1, -1, 1, 1, -1,
                                   -1, -1, 1,  1, -1, 1,  -1, 1, 1,  1, 1, 1};
const std::vector<int32_t> kCubeTriangles = {0, 2, 3, 0, 3, 1, 4, 5, 6, 5, 7, 6, 0, 1, 5, 0, 5, 4,
                                             2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 5, 3, 7, 5};

TEST(VertexNormals, ThoseOfACubePointThroughItsCorners) {
  for (size_t i = 0; i < 8; ++i) {
    const auto side = [&](size_t bit) { return (i >> bit & 1) ? 0.57735f : -0.57735f; };
    EXPECT_THAT(NormalAt(i, kCube, kCubeTriangles), NearNormal(side(0), side(1), side(2))) << i;
  }
  EXPECT_THAT(NormalAt(7, kCube, kCubeTriangles, true), NearNormal(-0.57735f, -0.57735f, -0.57735f))
      << "clockwise";
}

TEST(VertexNormals, TrianglesCountByTheirAngleAtThePoint) {
  // A pyramid of height 1 over a square from -1 to 1; the base as one quad of two triangles.
  const std::vector<double> points = {1, 1, 0, -1, 1, 0, -1, -1, 0, 1, -1, 0, 0, 0, 1};
  const std::vector<int32_t> triangles = {0, 1, 4, 1, 2, 4, 2, 3, 4, 3, 0, 4, 0, 3, 2, 0, 2, 1};
  EXPECT_THAT(NormalAt(4, points, triangles), NearNormal(0, 0, 1));
  // At a corner of the base two sides, (1,0,1) and (0,1,1) over the root of 2, have 54.7356 degrees each and
  // the base, (0,0,-1), has 90.
  EXPECT_THAT(NormalAt(0, points, triangles), NearNormal(0.689106f, 0.689106f, -0.224198f));
}

TEST(VertexNormals, ATriangleWithoutAreaAddsNothing) {
  const std::vector<double> points = {0, 0, 0, 1, 0, 0, 0, 1, 0, 2, 0, 0};
  EXPECT_THAT(NormalAt(0, points, {0, 1, 2, 0, 1, 3, 0, 0, 0}), NearNormal(0, 0, 1));
  EXPECT_THAT(NormalAt(3, points, {0, 1, 2}), NearNormal(0, 0, 0)) << "no triangle";
  EXPECT_THAT(NormalAt(0, points, {0, 1, 2, 0, 2, 1}), NearNormal(0, 0, 0)) << "opposite triangles";
  EXPECT_THAT(NormalAt(0, {0, 0, 0, 1e200, 0, 0, 0, 1e200, 0}, {0, 1, 2}), NearNormal(0, 0, 0));
}

}  // namespace
