// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/character.h"
#include "support/test_host.h"

namespace {

using namespace std::string_literals;
using support::Character;
using support::LayerElement;
using support::TestHost;
using testing::ElementsAre;

/// Little-endian words as four bytes each.
std::string Words(std::initializer_list<uint32_t> words) {
  std::string bytes;
  for (const uint32_t word : words) {
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(word >> shift & 0xff);
  }
  return bytes;
}

TEST(MeshFile, HoldsOneTriangleByteForByte) {
  Character model;
  auto mesh = model.Triangle("Body");
  Character::Coordinates(mesh, {0.5, 0.25, 1, 1, 0, 0}, {0, 1, 2});
  const auto root = model.Bone("root"), tip = model.Bone("tip", root);
  model.Weights(mesh, root, {0, 1}, {0.25, 1});
  model.Weights(mesh, tip, {0}, {0.25});
  TestHost host(model);
  constexpr uint32_t kOne = 0x3f800000, kHalf = 0x3f000000, kThreeQuarters = 0x3f400000;
  const std::string expected =
      "CMF\0"s + Words({1000, 1, 151, 3, 1, 0, 0, 1}) +
      // Position, normal, two unused words, texture coordinate, influences.
      Words({0, 0, 0, 0, 0, kOne, 0, 0, kHalf, kThreeQuarters, 2, 0, kHalf, 1, kHalf}) +
      Words({kOne, 0, 0, 0, 0, kOne, 0, 0, kOne, 0, 1, 0, kOne}) +
      Words({0, kOne, 0, 0, 0, kOne, 0, 0, 0, kOne, 1, 0, kOne}) + Words({0, 1, 2});
  EXPECT_EQ(host.ReadPackage()["Body.cmf"], expected);
}

TEST(MeshFile, TellsOfUnweightedVerticesOnceUnlessThereAreNoBones) {
  const std::string told = "This model has some UNWEIGHTED vertices!\n";
  Character model;
  model.Triangle("One");
  model.Triangle("Two");
  TestHost host(model);
  EXPECT_EQ(host.Told(told), 0u);
  model.Bone("root");
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(host.Told(told), 2u);
}

TEST(MeshFile, IsReportedInTwentiethsOfItsVertices) {
  struct {
    size_t points, lines;
    const char* last;
  } const cases[] = {{3, 3, "10"}, {20, 20, "95"}, {41, 21, "100"}, {59, 30, "145"}};
  for (const auto& [points, lines, last] : cases) {
    Character model;
    model.Mesh("Body", std::vector<double>(3 * points), {0, 1, -3});
    TestHost host(model);
    const auto told = host.LinesThatBegin("Writing Mesh: ");
    ASSERT_EQ(told.size(), lines) << points;
    EXPECT_EQ(told.back(), "Writing Mesh: "s + last + "% done");
  }
}

TEST(MeshOptions, DecideWhichNormalsPointInward) {
  struct {
    int mode;
    const char* list;
    bool inward;
  } const cases[] = {{0, "", false},          {1, "", true},         {2, "", false},     {2, "body", true},
                     {2, "Hat", false},       {2, "Hat|BODY", true}, {1, "Body", false}, {1, "Hat", true},
                     {0, "Body", false},      {0, "Hat", true},      {0, "!Body", true}, {2, "!Body", false},
                     {2, "!Body|Body", true}, {2, "Body ", false},   {1, "|", true}};
  Character model;
  model.Triangle("Body");
  for (const auto& [mode, list, inward] : cases) {
    TestHost host;
    host.job.meshOptionMode = mode;
    host.job.meshOptionList = list;
    ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
    EXPECT_EQ(host.Mesh("Body").vertices[1].normal[2], inward ? -1.0f : 1.0f) << mode << " " << list;
  }
}

TEST(TextureCoordinates, OfControlPointsAreTakenThroughTheirIndices) {
  Character model;
  model.Triangle("Body").geometry->Add(LayerElement(
      "LayerElementUV", 0, "ByVertice", "IndexToDirect",
      {support::Doubles("UV", {0.125, 0, 0.25, 0, 0.5, 0}), support::Ints("UVIndex", {2, 0, -1})}));
  TestHost host(model);
  const auto vertices = host.Mesh("Body").vertices;
  EXPECT_THAT((std::array{vertices[0].u, vertices[1].u, vertices[2].u}), ElementsAre(0.5f, 0.125f, 0.0f));
  EXPECT_EQ(vertices[2].v, 1.0f);
  EXPECT_EQ(host.LinesThatBegin(">>> Error getting").size(), 0u);
}

TEST(TextureCoordinates, OfUnknownModesAreNoneAndOfEmptyElementsAreMissed) {
  struct {
    const char *mapping, *reference;
    std::vector<double> uvs;
    size_t missed;
  } const cases[] = {{"ByControlPoint", "Index", {1, 1, 1, 1, 1, 1}, 0},
                     {"ByPolygon", "IndexToDirect", {1, 1, 1, 1, 1, 1}, 0},
                     {"ByPolygonVertex", "IndexToDirect", {}, 3}};
  for (const auto& [mapping, reference, uvs, missed] : cases) {
    Character model;
    model.Triangle("Body").geometry->Add(
        LayerElement("LayerElementUV", 0, mapping, reference,
                     {support::Doubles("UV", uvs), support::Ints("UVIndex", {0, 1, 2})}));
    TestHost host(model);
    EXPECT_EQ(host.Mesh("Body").vertices[1].u, 0.0f) << mapping;
    EXPECT_EQ(host.Told(">>> Error getting UVs (Texture Coordinates)"), missed) << mapping;
    EXPECT_THAT(host.ReadPackage()["Body.xrf"], testing::HasSubstr("NUMMAPS=\"0\"")) << mapping;
  }
}

TEST(TextureCoordinates, AreThoseThatAllDiffusePicturesName) {
  const std::pair<const char*, const char*> cases[] = {{"", "decal"},      {"decal", ""},
                                                       {"decal", "plain"}, {"plain", "plain"},
                                                       {"none", "none"},   {"decal", "decal"}};
  for (const auto& [first, second] : cases) {
    Character model;
    const auto mesh = model.Triangle("Body");
    for (const auto& [number, name, u] : {std::tuple(0, "plain", 0.25), std::tuple(1, "decal", 0.75)}) {
      mesh.geometry->Add(LayerElement("LayerElementUV", number, "ByPolygonVertex", "Direct",
                                      {{"Name", {name}}, support::Doubles("UV", {u, 0, u, 0, u, 0})}));
    }
    model.Material(mesh);
    for (const char* uvSet : {first, second}) {
      model.Texture(model.Material(mesh), "skin.tga")
          .Add(support::Properties({support::Property("UVSet", {uvSet})}));
    }
    TestHost host(model);
    const bool agree = std::string_view(first) == "decal" && std::string_view(second) == "decal";
    EXPECT_EQ(host.Mesh("Body").vertices[0].u, agree ? 0.75f : 0.25f) << first << ", " << second;
  }
}

TEST(TextureCoordinates, ThatAreMissingAreReportedForTheFirstMeshOnly) {
  Character model;
  for (const char* name : {"Sound", "F:irst", "Second"}) {
    const auto mesh = model.Triangle(name);
    const double last = std::string_view(name) == "Sound" ? 2 : 9;
    Character::Coordinates(mesh, {0, 0, 1, 0, 0, 1}, {0, last, last});
  }
  TestHost host(model);
  EXPECT_EQ(host.Told(">>> Error getting UVs (Texture Coordinates)"), 2u);
  EXPECT_THAT(host.LinesThatBegin(">>> for"), ElementsAre(">>> for F:irst", ">>> for F:irst"));
  EXPECT_EQ(host.Mesh("Second").vertices[1].v, 1.0f);
}

}  // namespace
