// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cmath>
#include <map>
#include <numbers>

#include "scene/geometry/triangulate.h"
#include "support/load_scene.h"

namespace {

using scene::KFbxTriangles;
using testing::ElementsAre;

struct Point {
  double x, y;
};
using Outline = std::vector<Point>;
using Triangles = std::vector<std::array<size_t, 3>>;

/// Triangles of a mesh with these points (x, y, z each) and polygon table.
KFbxTriangles Triangulate(std::vector<double> points, std::vector<double> table) {
  const support::ReadResult records =
      support::ReadRecords(support::WriteBinary({{"Geometry",
                                                  {},
                                                  {support::Doubles("Vertices", std::move(points)),
                                                   support::Ints("PolygonVertexIndex", std::move(table))}}}));
  scene::KFbxMesh mesh("mesh", records["Geometry"]);
  return TriangulateMesh(mesh);
}

std::vector<int32_t> CornersOf(const KFbxTriangles& triangles) {
  return {triangles.corners.begin(), triangles.corners.end()};
}

/// Triangles of one polygon over `points`, in their order.
Triangles TrianglesOf(const std::vector<double>& points) {
  std::vector<double> table;
  for (size_t i = 0; i < points.size() / 3; ++i) table.push_back(static_cast<double>(i));
  table.back() = -table.back() - 1;
  const KFbxTriangles result = Triangulate(points, table);
  Triangles triangles;
  for (size_t t = 0; t < result.Count(); ++t) {
    const auto corner = [&](size_t k) { return static_cast<size_t>(result.corners[3 * t + k]); };
    triangles.push_back({corner(0), corner(1), corner(2)});
  }
  return triangles;
}

enum class Plane { XY, YZ, ZX };

std::vector<double> PointsOf(const Outline& outline, Plane plane) {
  std::vector<double> points;
  for (const auto [x, y] : outline) {
    if (plane == Plane::XY) points.insert(points.end(), {x, y, 7});
    if (plane == Plane::YZ) points.insert(points.end(), {7, x, y});
    if (plane == Plane::ZX) points.insert(points.end(), {y, 7, x});
  }
  return points;
}

double SignedArea(Point a, Point b, Point c) {
  return ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x)) / 2;
}

/// Expects triangles that cover the polygon once: all turn as it does, their areas add up to `area`, and each
/// edge has the outline or another triangle on its other side.
void ExpectTiles(const Outline& outline, const Triangles& triangles, double area) {
  ASSERT_EQ(triangles.size(), outline.size() - 2);
  double sum = 0;
  std::map<std::pair<size_t, size_t>, int> edges;
  for (const auto& t : triangles) {
    const double part = SignedArea(outline[t[0]], outline[t[1]], outline[t[2]]);
    EXPECT_GT(part * area, 0) << t[0] << " " << t[1] << " " << t[2];
    sum += part;
    for (size_t k = 0; k < 3; ++k) ++edges[{t[k], t[(k + 1) % 3]}];
  }
  EXPECT_NEAR(sum, area, 1e-9);
  for (const auto& [edge, count] : edges) {
    EXPECT_EQ(count, 1);
    const bool outer = (edge.first + 1) % outline.size() == edge.second;
    EXPECT_EQ(edges.count({edge.second, edge.first}), outer ? 0u : 1u) << edge.first << " " << edge.second;
  }
}

/// The same for every first corner, both windings and three planes.
void ExpectTilesAllWays(Outline outline, double area) {
  for (const double sign : {1.0, -1.0}) {
    for (size_t start = 0; start < outline.size(); ++start) {
      for (const Plane plane : {Plane::XY, Plane::YZ, Plane::ZX}) {
        SCOPED_TRACE("first corner " + std::to_string(start) + ", plane " +
                     std::to_string(static_cast<int>(plane)) + (sign > 0 ? "" : ", reversed"));
        ExpectTiles(outline, TrianglesOf(PointsOf(outline, plane)), sign * area);
      }
      std::rotate(outline.begin(), outline.begin() + 1, outline.end());
    }
    std::reverse(outline.begin(), outline.end());
  }
}

TEST(Triangulation, ReflexPolygonsAreCoveredOnce) {
  // A dart, an E and a spiral.
  ExpectTilesAllWays({{0, 3}, {-2, -2}, {0, 0}, {2, -2}}, 6);
  ExpectTilesAllWays(
      {{0, 0}, {4, 0}, {4, 1}, {1, 1}, {1, 2}, {3, 2}, {3, 3}, {1, 3}, {1, 4}, {4, 4}, {4, 5}, {0, 5}}, 13);
  ExpectTilesAllWays(
      {{0, 0}, {5, 0}, {5, 5}, {1, 5}, {1, 2}, {3, 2}, {3, 3}, {2, 3}, {2, 4}, {4, 4}, {4, 1}, {0, 1}}, 15);
}

TEST(Triangulation, ConvexPolygonsAreCutFromTheirFirstCorner) {
  EXPECT_THAT(TrianglesOf({0, 0, 0, 2, 0, 0, 2, 1, 0, 0, 1, 0}),
              ElementsAre(std::array<size_t, 3>{0, 1, 2}, std::array<size_t, 3>{0, 2, 3}));
  EXPECT_THAT(TrianglesOf({0, 0, 0, 2, 0, 0, 3, 1, 0, 1, 2, 0, -1, 1, 0}),
              ElementsAre(std::array<size_t, 3>{0, 1, 2}, std::array<size_t, 3>{0, 2, 3},
                          std::array<size_t, 3>{0, 3, 4}));
}

TEST(Triangulation, EveryPolygonGivesTwoTrianglesLessThanCorners) {
  const Outline holed = {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}, {1, 1}, {1, 3}, {3, 3}, {3, 1}, {1, 1}};
  Outline pentagram;
  for (int i = 0; i < 5; ++i) {
    const double angle = i * 0.8 * std::numbers::pi;
    pentagram.push_back({std::cos(angle), std::sin(angle)});
  }
  const struct {
    const char* what;
    Outline outline;
  } kCases[] = {{"on one line", {{0, 0}, {1, 0}, {2, 0}, {3, 0}, {2, 0}, {1, 0}}},
                {"one point", {{1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}}},
                {"repeated corners", {{0, 0}, {0, 0}, {2, 0}, {2, 0}, {2, 2}, {1, 1}, {0, 2}, {0, 2}}},
                {"bow tie", {{0, 0}, {1, 1}, {1, 0}, {0, 1}}},
                {"bow tie of six", {{0, 0}, {2, 2}, {3, 1}, {3, 3}, {2, 1}, {0, 3}}},
                {"star in one line", pentagram},
                {"hole by a bridge", holed},
                {"huge", {{0, 0}, {1e308, 0}, {1e308, 1e308}, {1, 1}, {0, 1e308}}},
                {"tiny", {{0, 0}, {1e-308, 0}, {1e-308, 1e-308}, {1e-309, 1e-309}, {0, 1e-308}}}};
  for (const auto& c : kCases) {
    const Triangles triangles = TrianglesOf(PointsOf(c.outline, Plane::XY));
    EXPECT_EQ(triangles.size(), c.outline.size() - 2) << c.what;
  }
  double area = 0;
  for (const auto& t : TrianglesOf(PointsOf(holed, Plane::XY))) {
    area += std::abs(SignedArea(holed[t[0]], holed[t[1]], holed[t[2]]));
  }
  EXPECT_NEAR(area, 12, 1e-9) << "of the 16 the hole takes 4";
  EXPECT_EQ(Triangulate({0, 0, 0, 1, 0, 0}, {-1, 0, -2}).Count(), 0u);
}

TEST(Triangulation, ACombOfManyTeethIsCoveredOnce) {
  Outline comb = {{0, -1}, {400, -1}};
  for (int i = 400; i-- > 0;) {
    comb.push_back({i + 0.75, 5});
    comb.push_back({static_cast<double>(i), 0});
  }
  // A back of 399 by 1, 399 teeth of width 1 and height 5, and 3.375 at the slanted end.
  ExpectTiles(comb, TrianglesOf(PointsOf(comb, Plane::XY)), 1399.875);
}

TEST(Triangulation, CornersKeepTheirPlaceInTheFileAndTheirPolygon) {
  const std::vector<double> square = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
  // A line, a triangle, one with a missing point, a quad.
  const KFbxTriangles triangles = Triangulate(square, {0, -2, 3, 0, -2, 0, 1, -10, 1, 2, 3, -1});
  EXPECT_THAT(CornersOf(triangles), ElementsAre(3, 0, 1, 1, 2, 3, 1, 3, 0));
  std::vector<uint32_t> corners, polygons;
  for (size_t i = 0; i < triangles.corners.size(); ++i) corners.push_back(triangles.SourceCorner(i));
  for (size_t i = 0; i < triangles.Count(); ++i) polygons.push_back(triangles.Polygon(i));
  EXPECT_THAT(corners, ElementsAre(2, 3, 4, 8, 9, 10, 8, 10, 11));
  EXPECT_THAT(polygons, ElementsAre(1, 2, 2));
}

}  // namespace
