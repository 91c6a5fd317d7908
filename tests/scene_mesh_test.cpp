// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <limits>

#include "scene/model/mesh.h"
#include "support/load_scene.h"

namespace {

using scene::KFbxMesh;
using support::Doubles;
using support::FbxRecord;
using support::FbxRecords;
using support::FbxValue;
using support::Ints;
using support::LayerElement;
using testing::ElementsAre;

constexpr double kIntMin = std::numeric_limits<int32_t>::min();

/// A mesh and the records that it reads from.
struct LoadedMesh {
  explicit LoadedMesh(const FbxRecord& geometry)
      : records(support::ReadRecords(support::WriteBinary({geometry}))),
        mesh("mesh", records[geometry.name]) {}

  support::ReadResult records;
  KFbxMesh mesh;
};

/// Polygons over four points, as "0 1 2|1 3 2".
std::string PolygonsOf(const KFbxMesh& mesh) {
  std::string text;
  for (uint32_t i = 0; i < mesh.GetPolygons().Count(); ++i) {
    const scene::KFbxPolygon polygon = mesh.GetPolygons()[i];
    if (i) text += "|";
    for (uint32_t k = 0; k < polygon.size; ++k) {
      text += (k ? " " : "") + std::to_string(mesh.GetPolygonVertices()[polygon.firstCorner + k]);
    }
  }
  return text;
}

FbxRecord FourPoints(std::vector<double> polygonVertexIndex, FbxRecords elements = {}) {
  FbxRecord geometry("Geometry", {}, std::move(elements));
  geometry.Add(Doubles("Vertices", {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}));
  geometry.Add(Ints("PolygonVertexIndex", std::move(polygonVertexIndex)));
  return geometry;
}

TEST(Polygons, ANegativeIndexIsTheLastCorner) {
  const struct {
    const char* what;
    std::vector<double> table;
    const char* expected;
    uint32_t dropped;
  } kCases[] = {{"triangles", {0, 1, -3, 1, 3, -3}, "0 1 2|1 3 2", 0},
                {"one and two corners", {0, -2, -4, 1, 2, -4}, "0 1|3|1 2 3", 0},
                {"every corner a last one", {-1, -2, -3}, "0|1|2", 0},
                {"last polygon not ended", {0, 1, -3, 1, 2, 3}, "0 1 2|1 2 3", 0},
                {"a point twice", {0, 1, 0, -4}, "0 1 0 3", 0},
                {"no polygon", {}, "", 0},
                {"point out of range", {0, 1, -3, 0, 4, -3, 1, 2, -4}, "0 1 2|1 2 3", 1},
                {"last corner out of range", {0, 1, -5, 1, 2, -4}, "1 2 3", 1},
                {"smallest integer", {0, 1, kIntMin, 1, 2, 3, -1}, "1 2 3 0", 1},
                {"largest integer", {2147483647, 1, -3, 1, 2, -4}, "1 2 3", 1}};
  for (const auto& c : kCases) {
    LoadedMesh loaded(FourPoints(c.table));
    EXPECT_EQ(PolygonsOf(loaded.mesh), c.expected) << c.what;
    EXPECT_EQ(loaded.mesh.GetPolygonCounts().dropped, c.dropped) << c.what;
  }
}

TEST(ControlPoints, AnIncompletePointIsLeftOut) {
  LoadedMesh loaded(FbxRecord("Geometry", {}, {Doubles("Vertices", {1, 2, 3, 4, 5, 6, 7})}));
  EXPECT_EQ(loaded.mesh.GetControlPointsCount(), 2);
  EXPECT_THAT(loaded.mesh.GetControlPoints(), ElementsAre(1, 2, 3, 4, 5, 6));
  EXPECT_EQ(loaded.mesh.GetPolygonCount(), 0);
}

TEST(ControlPoints, ReleasedArraysComeBack) {
  LoadedMesh loaded(FourPoints({0, 1, -3}));
  EXPECT_EQ(PolygonsOf(loaded.mesh), "0 1 2");
  loaded.mesh.ReleaseArrays();
  EXPECT_EQ(loaded.mesh.GetControlPointsCount(), 4);
  EXPECT_EQ(PolygonsOf(loaded.mesh), "0 1 2");
  EXPECT_EQ(loaded.mesh.GetControlPoints().size(), 12u);
}

std::vector<double> Coordinates(int count) {
  return std::vector<double>(2 * static_cast<size_t>(count), 0.5);
}

/// Coordinate index of each corner of the triangles 0 1 2 and 0 2 3.
std::vector<int> UvIndices(const FbxRecord& element) {
  LoadedMesh loaded(FourPoints({0, 1, -3, 0, 2, -4}, {element}));
  const scene::KFbxLayerElementUV* uvs = loaded.mesh.GetUVs();
  std::vector<int> indices;
  if (!uvs) return indices;
  for (size_t i = 0; i < 6; ++i) indices.push_back(uvs->GetLookup()(i, loaded.mesh.GetPolygonVertices()[i]));
  return indices;
}

TEST(TextureCoordinates, EveryCornerFindsItsCoordinateInEveryMode) {
  const struct {
    const char* mapping;
    const char* reference;
    int coordinates;
    std::vector<double> index;  ///< no record when empty
    std::vector<int> expected;
  } kCases[] = {{"ByPolygonVertex", "Direct", 6, {}, {0, 1, 2, 3, 4, 5}},
                {"ByPolygonVertex", "Direct", 4, {}, {0, 1, 2, 3, -1, -1}},
                {"ByPolygonVertex", "IndexToDirect", 4, {3, 2, 1, 3, 1, 0}, {3, 2, 1, 3, 1, 0}},
                {"ByPolygonVertex", "Index", 4, {3, 2, 1, 3, 1, 0}, {3, 2, 1, 3, 1, 0}},
                {"ByPolygonVertex", "IndexToDirect", 6, {}, {0, 1, 2, 3, 4, 5}},
                {"ByPolygonVertex", "IndexToDirect", 3, {-1, 0, 1, kIntMin, 3, 2}, {-1, 0, 1, -1, -1, 2}},
                {"ByPolygonVertex", "IndexToDirect", 3, {2, 1}, {2, 1, -1, -1, -1, -1}},
                {"ByVertex", "Direct", 4, {}, {0, 1, 2, 0, 2, 3}},
                {"ByControlPoint", "Direct", 3, {}, {0, 1, 2, 0, 2, -1}},
                {"ByVertice", "IndexToDirect", 2, {1, 0, 1, 0}, {1, 0, 1, 1, 1, 0}},
                {"ByControlPoint", "Index", 4, {0, 1, 2, 3}, {-1, -1, -1, -1, -1, -1}},
                {"ByPolygon", "IndexToDirect", 2, {0, 1, 0, 1, 0, 1}, {-1, -1, -1, -1, -1, -1}},
                {"ByPolygon", "Direct", 2, {}, {-1, -1, -1, -1, -1, -1}},
                {"ByEdge", "Direct", 6, {}, {-1, -1, -1, -1, -1, -1}},
                {"AllSame", "Direct", 1, {}, {-1, -1, -1, -1, -1, -1}}};
  for (const auto& c : kCases) {
    FbxRecord element = LayerElement("LayerElementUV", 0, c.mapping, c.reference,
                                     {Doubles("UV", Coordinates(c.coordinates))});
    if (!c.index.empty()) element.Add(Ints("UVIndex", c.index));
    EXPECT_EQ(UvIndices(element), c.expected) << c.mapping << ", " << c.reference << ", " << c.coordinates
                                              << " coordinates, " << c.index.size() << " indices";
  }
}

TEST(TextureCoordinates, AnElementWithoutMappingIsAbsentAndOneWithoutCoordinatesGivesNone) {
  const auto indices = [](const char* mapping, FbxRecord array) {
    return UvIndices(LayerElement("LayerElementUV", 0, mapping, "Direct", {std::move(array)}));
  };
  EXPECT_THAT(indices("NoMappingInformation", Doubles("UV", {0, 0})), ElementsAre());
  EXPECT_THAT(indices("ByMagic", Doubles("UV", {0, 0})), ElementsAre());
  const std::vector<int> none(6, -1);
  EXPECT_EQ(indices("ByPolygonVertex", Doubles("UV", {0, 0, 1})), none) << "half a coordinate";
  EXPECT_EQ(indices("ByPolygonVertex", Doubles("UV", {})), none);
  EXPECT_EQ(indices("ByPolygonVertex", Ints("UVIndex", {0, 1, 2})), none) << "no coordinate record";
  EXPECT_TRUE(UvIndices({"LayerElementUV", {0}, {Doubles("UV", {0, 0})}}).empty()) << "no mapping";
}

FbxRecord Layer(FbxValue number, int typedIndex) {
  return {"Layer",
          {std::move(number)},
          {{"LayerElement", {}, {{"Type", {"LayerElementUV"}}, {"TypedIndex", {typedIndex}}}}}};
}

/// Coordinates of the element in layer 0 of a mesh with two UV elements of one and two coordinates; 0: none.
int UvCountInLayers(FbxRecords layers) {
  layers.push_back(LayerElement("LayerElementUV", 0, "AllSame", "Direct", {Doubles("UV", Coordinates(1))}));
  layers.push_back(LayerElement("LayerElementUV", 1, "AllSame", "Direct", {Doubles("UV", Coordinates(2))}));
  LoadedMesh loaded(FourPoints({}, std::move(layers)));
  return loaded.mesh.GetUVs() ? loaded.mesh.GetUVs()->GetCoordinateCount() : 0;
}

TEST(Layers, TheFirstLayerNamesItsElementByTypeAndIndex) {
  EXPECT_EQ(UvCountInLayers({Layer(0, 0), Layer(1, 1)}), 1);
  EXPECT_EQ(UvCountInLayers({Layer(1, 0), Layer(0, 1)}), 2);
  EXPECT_EQ(UvCountInLayers({Layer(0, 7)}), 0) << "element that does not exist";
  EXPECT_EQ(UvCountInLayers({{"Layer", {0}}, Layer(1, 0)}), 0) << "first layer without coordinates";
  EXPECT_EQ(UvCountInLayers({Layer(1, 0)}), 0) << "no first layer";
  EXPECT_EQ(UvCountInLayers({}), 1) << "no layers at all";
}

TEST(Layers, TheHighestLayerNumberGivesTheCount) {
  const auto count = [](FbxRecords layers) {
    return LoadedMesh(FourPoints({}, std::move(layers))).mesh.GetLayerCount();
  };
  EXPECT_EQ(count({Layer(0, 0), Layer(2, 0)}), 3);
  EXPECT_EQ(count({{"LayerElementNormal", {0}}}), 1) << "elements without a layer";
  EXPECT_EQ(count({{"Layer", {std::numeric_limits<int64_t>::max()}}}), 1 << 20) << "bounded";
  EXPECT_EQ(count({}), 0);
  EXPECT_EQ(count({Layer(-5, 0)}), 0);
}

/// Material of three polygons of 3, 4 and 3 corners.
std::vector<int> MaterialIndices(const char* mapping, std::vector<double> materials) {
  LoadedMesh loaded(FourPoints({0, 1, -3, 0, 1, 2, -4, 1, 2, -4},
                               {LayerElement("LayerElementMaterial", 0, mapping, "IndexToDirect",
                                             {Ints("Materials", std::move(materials))})}));
  const scene::KFbxLayerElementMaterial* element = loaded.mesh.GetMaterials();
  std::vector<int> indices;
  for (uint32_t i = 0; element && i < 3; ++i) {
    const scene::KFbxPolygon polygon = loaded.mesh.GetPolygons()[i];
    indices.push_back(element->GetMaterialIndex(polygon.number, polygon.firstCorner));
  }
  return indices;
}

TEST(PolygonMaterials, EveryPolygonFindsItsMaterialInEveryMode) {
  EXPECT_THAT(MaterialIndices("AllSame", {2}), ElementsAre(2, 2, 2));
  EXPECT_THAT(MaterialIndices("AllSame", {}), ElementsAre(-1, -1, -1));
  EXPECT_THAT(MaterialIndices("ByPolygon", {1, 0, 5}), ElementsAre(1, 0, 5));
  EXPECT_THAT(MaterialIndices("ByPolygon", {1, -1}), ElementsAre(1, -1, -1));
  EXPECT_THAT(MaterialIndices("ByPolygonVertex", {4, 4, 4, 6, 6, 6, 6, 8, 8, 8}), ElementsAre(4, 6, 8));
  EXPECT_THAT(MaterialIndices("NoMappingInformation", {0}), ElementsAre());
}

}  // namespace
