// SPDX-License-Identifier: MIT
//
// Models that ask for far more memory or time than their size are refused before anything is spent.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mesh/claims/weigh_claims.h"
#include "scene/assemble/build_scene.h"
#include "scene/geometry/triangulate.h"
#include "scene/model/texture.h"
#include "support/load_scene.h"
#include "support/test_host.h"

namespace {

using namespace support;
using testing::HasSubstr;

/// Why the file is refused; empty when it is not.
std::string Refusal(const FbxFile& file) {
  ReadResult result = ReadRecords(WriteBinary(file.Records()));
  if (!result.error.empty()) return result.error;
  scene::KFbxScene scene("scene");
  const std::string error = BuildScene(std::move(result.tree), scene).text;
  return error.empty() ? ts3d::WeighClaims(scene) : error;
}

/// Zeros that pack to a thousandth of their size.
FbxRecord Zeros(const char* name, char code, size_t count) {
  return {name, {FbxValue::PackedArray(code, std::vector<double>(count))}};
}

FbxRecord Bomb(const char* name, char code = 'd') { return Zeros(name, code, 2'250'000); }

/// A mesh with the extra records below its geometry, on a node with a skin of one cluster.
FbxFile MeshWith(FbxRecords extra, FbxRecords ofCluster = {}) {
  FbxFile file;
  file.Model(1, "body");
  FbxRecord& mesh = file.Object("Geometry", 2, "", "Mesh");
  mesh.children = std::move(extra);
  mesh.Add(Doubles("Vertices", {0, 0, 0, 1, 0, 0, 0, 1, 0}));
  mesh.Add(Ints("PolygonVertexIndex", {0, 1, -3}));
  file.Skin(3);
  file.Object("Deformer", 4, "", "Cluster").children = std::move(ofCluster);
  file.Connect({{1, 0}, {2, 1}, {3, 2}, {4, 3}});
  return file;
}

TEST(ExcessiveClaims, OfPackedArraysAreRefusedUnlessNobodyReadsThem) {
  const char* const refusal = "a mesh unpacks to far more than a file of this size can hold";
  EXPECT_EQ(Refusal(MeshWith({Bomb("Vertices")})), refusal);
  EXPECT_EQ(Refusal(MeshWith({Zeros("PolygonVertexIndex", 'i', 6'000'000)})), refusal);
  EXPECT_EQ(Refusal(MeshWith({}, {Bomb("Indexes", 'i'), Bomb("Weights")})), refusal);
  EXPECT_EQ(Refusal(MeshWith({{"LayerElementUV", {0}, {Zeros("UV", 'f', 4'000'000)}}})), refusal);
  EXPECT_EQ(Refusal(MeshWith({{"LayerElementNormal", {0}, {Bomb("Normals")}}})), "");
  EXPECT_EQ(Refusal(MeshWith({}, {Bomb("Transform")})), "");
  TestHost host;
  EXPECT_EQ(host.Convert(WriteBinary(MeshWith({Bomb("Vertices")}).Records())),
            ts3d::ConversionResult::LoadFailed);
}

TEST(ExcessiveClaims, OfWhatArraysHoldAreRefusedBeforeItIsUnpacked) {
  // One polygon of so many corners, and polygons of a single corner behind a triangle.
  std::vector<double> singles(2'500'000, -1);
  singles[0] = singles[1] = 0;
  for (const FbxRecord& corners : {Zeros("PolygonVertexIndex", 'i', 1'000'000),
                                   FbxRecord{"PolygonVertexIndex", {FbxValue::PackedArray('i', singles)}}}) {
    const auto scene = LoadScene(MeshWith({corners}));
    EXPECT_EQ(ts3d::WeighClaims(*scene), "");
    scene::KFbxMesh& mesh = *FindNode(*scene, "body")->GetMesh();
    EXPECT_THROW(TriangulateMesh(mesh), scene::KFbxMeshExcess);
    TestHost host;
    EXPECT_EQ(host.Convert(WriteBinary(MeshWith({corners}).Records())), ts3d::ConversionResult::LoadFailed);
    EXPECT_EQ(host.lines.back(), ">>> Refused: a mesh unpacks to far more than a file of this size can hold");
    EXPECT_FALSE(host.Has("model.czp"));
  }
}

/// One mesh under `count` nodes.
FbxFile Instances(int count, size_t points) {
  FbxFile file;
  file.Object("Geometry", 1, "", "Mesh")
      .Add({"Vertices", {FbxValue::PackedArray('d', std::vector<double>(3 * points))}});
  for (int i = 0; i < count; ++i) {
    file.Model(10 + i, "tree");
    file.Connect(10 + i, 0);
    file.Connect(1, 10 + i);
  }
  return file;
}

TEST(ExcessiveClaims, OfMeshesThatServeManyNodesAreRefusedWhenNothingHonestAsksForThem) {
  EXPECT_EQ(Refusal(Instances(5000, 10'000)), "");
  EXPECT_EQ(Refusal(Instances(20'000, 500'000)), "its nodes repeat large meshes too often");
}

TEST(ExcessiveClaims, OfNamesAndObjectsAreRefused) {
  FbxFile materials = MeshWith({});
  materials.Model(9, std::string(5000, 'n'));
  materials.Connect({{9, 0}, {2, 9}});
  for (int i = 100; i < 20'000; ++i) {
    materials.Material(i, "m", "phong");
    materials.Connect(i, 9);
  }
  EXPECT_EQ(Refusal(materials), "its meshes have too many materials for a file of this size");
  FbxFile vertices;  // each of which may be reported under the name
  vertices.Model(1, std::string(1'000'000, 'n'));
  vertices.Object("Geometry", 2, "", "Mesh").Add(Doubles("Vertices", std::vector<double>(600'000)));
  vertices.Connect({{1, 0}, {2, 1}});
  EXPECT_EQ(Refusal(vertices), "its meshes have names that are too long for a file of this size");
  FbxFile bones;  // each cluster of which may be reported under the name
  bones.Model(1, "m");
  bones.Object("Geometry", 2, "", "Mesh").Add(Doubles("Vertices", {0, 0, 0}));
  bones.Model(3, std::string(100'000, 'n'));
  bones.Object("Deformer", 5, "", "Skin");
  bones.Connect({{1, 0}, {2, 1}, {3, 0}, {5, 2}});
  for (int i = 10; i < 1'000; ++i) {
    bones.Object("Deformer", i, "", "Cluster");
    bones.Connect({{i, 5}, {3, i}});
  }
  EXPECT_EQ(Refusal(bones), "its bones have names that are too long for a file of this size");
  FbxFile objects;
  for (int i = 1; i < 140'000; ++i) objects.Object("Model", i, "");
  EXPECT_EQ(Refusal(objects), "too many objects for a file of this size");
}

TEST(ExcessiveClaims, OfRecordsAreRefused) {
  std::string text = "; FBX 7.4.0 project file\n";
  for (int i = 0; i < 2'000'000; ++i) text += "a:";
  EXPECT_THAT(ReadRecords(text).error, HasSubstr("too many records for a file of this size"));
}

TEST(HonestMeshes, AreConvertedHoweverWellTheyPack) {
  // A floor of tiles, each with four coordinates of its own.
  constexpr int kSide = 450;
  std::vector<double> points, corners, coordinates, coordinateNumbers;
  for (int y = 0; y <= kSide; ++y) {
    for (int x = 0; x <= kSide; ++x) points.insert(points.end(), {double(x), 0, double(y)});
  }
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const double corner = y * (kSide + 1) + x;
      corners.insert(corners.end(), {corner, corner + 1, corner + kSide + 2, -(corner + kSide + 1) - 1});
      for (const double value : {0, 0, 1, 0, 1, 1, 0, 1}) coordinates.push_back(value);
    }
  }
  for (int i = 0; i < 4 * kSide * kSide; ++i) coordinateNumbers.push_back(i);
  FbxFile file;
  file.Model(1, "floor");
  FbxRecord& mesh = file.Object("Geometry", 2, "", "Mesh");
  mesh.Add({"Vertices", {FbxValue::PackedArray('d', points)}});
  mesh.Add({"PolygonVertexIndex", {FbxValue::PackedArray('i', corners)}});
  mesh.Add(LayerElement("LayerElementUV", 0, "ByPolygonVertex", "IndexToDirect",
                        {{"UV", {FbxValue::PackedArray('d', coordinates)}},
                         {"UVIndex", {FbxValue::PackedArray('i', coordinateNumbers)}}}));
  file.Connect({{1, 0}, {2, 1}});
  TestHost host;
  const std::string bytes = WriteBinary(file.Records());
  EXPECT_LT(bytes.size(), 3'000'000u);
  EXPECT_EQ(host.Convert(bytes), ts3d::ConversionResult::Success);
  EXPECT_EQ(host.job.polygonTotal, 2 * kSide * kSide);
}

TEST(LongNames, AreKeptAndOfPathsTheEnd) {
  FbxFile file;
  file.Model(1, std::string(100'000, 'n'));
  file.Connect(1, 0);
  file.Object("Texture", 2, "skin").Add({"FileName", {std::string(5000, 'p') + "/skin.png"}});
  const auto scene = LoadScene(file);
  EXPECT_EQ(scene->GetRootNode()->GetChild(0)->GetName(), std::string(100'000, 'n'));
  scene->ForEach<scene::KFbxTexture>([](const scene::KFbxTexture& texture) {
    EXPECT_EQ(texture.GetFileName(), std::string(4087, 'p') + "/skin.png");
  });
}

}  // namespace
