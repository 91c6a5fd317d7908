// SPDX-License-Identifier: MIT
//
// Vertices of glTF files as exporters pack them, and which of them become one control point.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "scene/model/material.h"
#include "support/load_gltf.h"

namespace {

using support::AddSkin;
using support::GltfFile;
using support::kSquare;
using support::PointsOf;
using support::TrianglesOf;
using testing::ElementsAre;
using testing::HasSubstr;
using Json = GltfFile::Json;
using Loaded = support::LoadedGltf;

/// "0:1 2:0.8 " for a cluster that holds point 0 fully and point 2 by 0.8.
std::string WeightsOf(const scene::KFbxMesh& mesh, int cluster) {
  const scene::KFbxCluster& read = *mesh.GetSkin(0)->GetCluster(cluster);
  std::string text;
  for (size_t i = 0; i < read.GetControlPointIndices().size(); ++i) {
    char pair[40];
    std::snprintf(pair, sizeof pair, "%d:%.3g ", read.GetControlPointIndices()[i],
                  read.GetControlPointWeights()[i]);
    text += pair;
  }
  return text;
}

/// "0 1,0.5 0," for the coordinates of all corners.
std::string CoordinatesOf(const scene::KFbxMesh& mesh) {
  std::string text;
  for (const int32_t pair : mesh.GetUVs()->GetIndexArray()) {
    char numbers[60];
    const double* uv = &mesh.GetUVs()->GetDirectArray()[2 * static_cast<size_t>(pair)];
    std::snprintf(numbers, sizeof numbers, "%.3g %.3g,", uv[0], uv[1]);
    text += numbers;
  }
  return text;
}

/// A node "m" with a mesh of the primitives, bound to two joints.
void AddBound(GltfFile& file, const std::vector<Json>& primitives) {
  const size_t mesh = file.Add("meshes", {{"primitives", primitives}});
  const std::vector<size_t> joints{file.Top({{"name", "a"}}), file.Top({{"name", "b"}})};
  file.Top({{"name", "m"}, {"mesh", mesh}, {"skin", AddSkin(file, joints, {})}});
}

TEST(GltfVertices, MayLieInterleavedBehindOtherData) {
  struct Vertex {
    float position[3];
    uint8_t joints[4], weights[4];
    uint16_t uv[2];
  };
  static_assert(sizeof(Vertex) == 24);
  const Vertex vertices[] = {{{0, 0, 0}, {0, 1, 0, 0}, {255, 0, 0, 0}, {0, 65535}},
                             {{1, 0, 0}, {0, 1, 0, 0}, {51, 204, 0, 0}, {65535, 65535}},
                             {{0, 1, 0}, {1, 0, 0, 0}, {255, 0, 0, 0}, {0, 0}}};
  constexpr size_t kBefore = 8;
  std::vector<uint8_t> bytes(kBefore + sizeof vertices, 0x55);
  std::memcpy(&bytes[kBefore], vertices, sizeof vertices);
  GltfFile file;
  const size_t view = file.View(bytes, {{"byteStride", sizeof(Vertex)}});
  const auto part = [&](int component, const char* type, size_t offset) {
    return file.Add("accessors", {{"bufferView", view},
                                  {"byteOffset", kBefore + offset},
                                  {"componentType", component},
                                  {"type", type},
                                  {"count", 3},
                                  {"normalized", component != GltfFile::kF32 && offset != 12}});
  };
  AddBound(file, {{{"attributes",
                    {{"POSITION", part(GltfFile::kF32, "VEC3", 0)},
                     {"JOINTS_0", part(GltfFile::kU8, "VEC4", 12)},
                     {"WEIGHTS_0", part(GltfFile::kU8, "VEC4", 16)},
                     {"TEXCOORD_0", part(GltfFile::kU16, "VEC2", 20)}}}}});
  const Loaded loaded(file);
  ASSERT_EQ(loaded.error, "");
  scene::KFbxMesh& mesh = loaded.Mesh("m");
  EXPECT_THAT(PointsOf(mesh), ElementsAre(0, 0, 0, 100, 0, 0, 0, 100, 0));
  EXPECT_EQ(WeightsOf(mesh, 0), "0:1 1:0.2 ");
  EXPECT_EQ(WeightsOf(mesh, 1), "1:0.8 2:1 ");
  EXPECT_EQ(CoordinatesOf(mesh), "0 0,1 0,0 1,");
}

TEST(GltfVertices, ThatAreSparseReplaceThoseBelowThem) {
  GltfFile file;
  const size_t points =
      file.Numbers(GltfFile::kI16, "VEC3", 3,
                   std::vector<int16_t>{0, 0, 0, 32767, 0, 0, 0, 32767, 0, 9, 9, 9}, {{"normalized", true}});
  Json& sparse = file.root["accessors"][points]["sparse"];
  sparse = {{"count", 1},
            {"indices", {{"bufferView", file.View(std::vector<uint8_t>{3})}, {"componentType", 5121}}},
            {"values", {{"bufferView", file.View(std::vector<int16_t>{0, 32767, -32768})}}}};
  file.Top(
      {{"name", "m"},
       {"mesh", file.Mesh({{"attributes", {{"POSITION", points}}}, {"indices", file.Indices({0, 1, 3})}})}});
  EXPECT_THAT(PointsOf(Loaded(file).Mesh("m")), ElementsAre(0, 0, 0, 100, 0, 0, 0, 100, 0, 0, 100, -100));
  sparse["indices"]["bufferView"] = file.View(std::vector<uint8_t>{4});
  EXPECT_THAT(Loaded(file).error, HasSubstr("leads out of its elements"));
}

TEST(GltfVertices, AreNumberedInEveryWidth) {
  // More of them than numbers of 16 bits can tell.
  constexpr uint32_t kLast = 70'000;
  std::vector<float> row(3 * (kLast + 1));
  for (uint32_t i = 0; i <= kLast; ++i) row[3 * i] = static_cast<float>(i);
  GltfFile file;
  const size_t points = file.Points(row);
  const size_t bytes = file.Numbers(GltfFile::kU8, "SCALAR", 1, std::vector<uint8_t>{0, 1, 2, 3, 2, 1});
  const size_t words = file.Numbers(GltfFile::kU32, "SCALAR", 1, std::vector<uint32_t>{0, 1, kLast});
  for (const auto& [name, indices] : {std::pair("bytes", bytes), std::pair("words", words)}) {
    file.Top({{"name", name},
              {"mesh", file.Mesh({{"attributes", {{"POSITION", points}}}, {"indices", indices}})}});
  }
  const Loaded loaded(file);
  EXPECT_EQ(TrianglesOf(loaded.Mesh("bytes")), "012 321 ");
  EXPECT_EQ(TrianglesOf(loaded.Mesh("words")), "0170000 ");
}

TEST(GltfVertices, WithNumbersThatAreNoneLoseThoseAlone) {
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN(),
                  kInf = std::numeric_limits<float>::infinity();
  GltfFile file;
  const Json primitive = {
      {"attributes",
       {{"POSITION", file.Points({0, 0, 0, kNan, 2, 0, 0, 1, kInf})},
        {"JOINTS_0",
         file.Numbers(GltfFile::kU8, "VEC4", 4, std::vector<uint8_t>{0, 1, 1, 1, 0, 1, 1, 1, 0, 1, 1, 1})},
        {"WEIGHTS_0", file.Numbers(GltfFile::kF32, "VEC4", 4,
                                   std::vector<float>{1, -1, kNan, kInf, .5f, .5f, -0.f, 0, 1, 0, -kInf, 0})},
        {"TEXCOORD_0",
         file.Numbers(GltfFile::kF32, "VEC2", 2, std::vector<float>{kNan, 0, 0, kInf, 1, 1})}}}};
  AddBound(file, {primitive});
  const Loaded loaded(file);
  scene::KFbxMesh& mesh = loaded.Mesh("m");
  EXPECT_THAT(PointsOf(mesh), ElementsAre(0, 0, 0, 0, 200, 0, 0, 100, 0));
  EXPECT_EQ(WeightsOf(mesh, 0), "0:1 1:0.5 2:1 ");
  EXPECT_EQ(WeightsOf(mesh, 1), "1:0.5 ");
  EXPECT_EQ(CoordinatesOf(mesh), "0 1,0 1,1 0,");
}

TEST(GltfVertices, AreRoundedToSinglePrecisionOnEverySystem) {
  GltfFile file;
  const std::vector<float> metres{0.1f, 0.2f, 0.3f, -0.7f, 1e37f, 1.1f, 3e38f, -3e38f, 0.9f};
  file.Top({{"name", "m"}, {"mesh", file.Mesh({{"attributes", {{"POSITION", file.Points(metres)}}}})}});
  std::vector<double> expected;
  for (const float metre : metres) {
    const volatile float centimetre = static_cast<float>(100.0 * static_cast<double>(metre));
    expected.push_back(std::isfinite(centimetre) ? static_cast<double>(centimetre) : 0.0);
  }
  EXPECT_EQ(PointsOf(Loaded(file).Mesh("m")), expected);
}

TEST(GltfVertices, OfTwoSidesStayApartHoweverRoundedTheirNormalsAre) {
  GltfFile file;
  const std::vector<float> side{0, 0, 0, 1, 0, 0, 0, 1, 0};
  std::vector<float> both = side;
  both.insert(both.end(), side.begin(), side.end());
  std::vector<int8_t> normals;
  for (const int8_t number : {int8_t{73}, int8_t{-73}}) normals.insert(normals.end(), 9, number);
  const Json attributes = {
      {"POSITION", file.Points(both)},
      {"NORMAL", file.Numbers(GltfFile::kI8, "VEC3", 3, normals, {{"normalized", true}})}};
  file.Top(
      {{"name", "m"},
       {"mesh", file.Mesh({{"attributes", attributes}, {"indices", file.Indices({0, 1, 2, 3, 5, 4})}})}});
  EXPECT_EQ(TrianglesOf(Loaded(file).Mesh("m")), "012 354 ");
}

TEST(GltfVertices, BecomeOnePointWhereNothingButTheLookDiffers) {
  GltfFile file;
  const auto place = [&](std::vector<float> xyz, std::vector<float> normals) {
    return Json{{"POSITION", file.Points(xyz)}, {"NORMAL", file.Points(normals)}};
  };
  // The corner of a box has three normals, and the seam of what was mirrored two zeros.
  const Json corner = place({0, 0, 0, 0, 0, 0, -0.0f, 0, -0.0f, 1, 0, 0, 0, 1, 0, 0, 0, 1},
                            {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 1, 0});
  file.Top({{"name", "box"},
            {"mesh",
             file.Mesh({{"attributes", corner}, {"indices", file.Indices({0, 3, 4, 1, 4, 5, 2, 5, 3})}})}});
  EXPECT_EQ(TrianglesOf(Loaded(file).Mesh("box")), "012 023 031 ");
}

TEST(GltfVertices, StayApartWhereAFurtherSetOfInfluencesDiffers) {
  GltfFile file;
  // Two lips that touch: eight influences, of which the first four are the same. The teeth have four.
  const std::vector<float> points{0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0};
  const std::vector<uint8_t> full{255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0};
  const auto set = [&](const std::vector<uint8_t>& first) {
    std::vector<uint8_t> joints;
    for (const uint8_t joint : first) joints.insert(joints.end(), {joint, 0, 0, 0});
    return file.Numbers(GltfFile::kU8, "VEC4", 4, joints);
  };
  const size_t weights = file.Numbers(GltfFile::kU8, "VEC4", 4, full, {{"normalized", true}});
  const Json teeth = {{"attributes", file.Held({{"POSITION", file.Points(kSquare)}}, {1, 1, 1, 1})}};
  const Json lips = {{"attributes",
                      {{"POSITION", file.Points(points)},
                       {"JOINTS_0", set({0, 0, 0, 0})},
                       {"WEIGHTS_0", weights},
                       {"JOINTS_1", set({0, 1, 1, 1})},
                       {"WEIGHTS_1", weights}}},
                     {"indices", file.Indices({0, 2, 3, 1, 3, 2})}};
  AddBound(file, {teeth, lips});
  const Loaded loaded(file);
  scene::KFbxMesh& mesh = loaded.Mesh("m");
  EXPECT_EQ(TrianglesOf(mesh), "012 467 576 ");
  EXPECT_EQ(WeightsOf(mesh, 0), "4:1 4:1 5:1 6:1 7:1 ") << "however many sets the first primitive has";
  EXPECT_EQ(WeightsOf(mesh, 1), "0:1 1:1 2:1 3:1 5:1 6:1 7:1 ");
}

TEST(GltfVertices, HaveTheirCoordinatesAsEachMaterialTransformsThem) {
  GltfFile file;
  file.root["images"] = {{{"uri", "a.png"}}};
  file.root["textures"] = {{{"source", 0}}};
  const auto material = [](const Json& transform) {
    return Json{
        {"pbrMetallicRoughness",
         {{"baseColorTexture", {{"index", 0}, {"extensions", {{"KHR_texture_transform", transform}}}}}}}};
  };
  file.root["materials"] = {material({{"offset", {0.25, 0}}}),
                            material({{"scale", {0.5, 2}}, {"texCoord", 1}}), material({{"scale", {1, 3}}})};
  const auto coordinates = [&](const std::vector<float>& uv) {
    return file.Numbers(GltfFile::kF32, "VEC2", 2, uv);
  };
  const Json attributes = {{"POSITION", file.Points(kSquare)},
                           {"TEXCOORD_0", coordinates({0, 0, 1, 0, 0, 1, 1, 1})},
                           {"TEXCOORD_1", coordinates({1, 1, 1, 1, 1, 1, 1, 1})}};
  std::vector<Json> primitives;
  for (int i = 0; i < 3; ++i)
    primitives.push_back({{"attributes", attributes}, {"indices", file.Indices({0, 1, 2})}, {"material", i}});
  file.Top({{"name", "m"}, {"mesh", file.Add("meshes", {{"primitives", primitives}})}});
  EXPECT_EQ(CoordinatesOf(Loaded(file).Mesh("m")), "0.25 1,1.25 1,0.25 0,0.5 -1,0.5 -1,0.5 -1,0 1,1 1,0 -2,");
}

}  // namespace
