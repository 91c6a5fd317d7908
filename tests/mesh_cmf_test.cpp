// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/character.h"
#include "support/test_host.h"

namespace {

using namespace std::string_literals;
using support::Character;
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
  TestHost host;
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
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
  TestHost host;
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(host.Told(told), 0u);
  const auto root = model.Bone("root");
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(host.Told(told), 2u);
  auto third = model.Triangle("Three");
  model.Weights(third, root, {0, 1, 2}, {1, 1, 1});
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(host.Told(told), 2u);
}

TEST(MeshFile, IsSilentAboutUnweightedVerticesOfABoneThatIsCalledDummy) {
  Character model;
  model.Triangle("Body");
  const auto bone = model.Bone("dummy_bone");
  TestHost host;
  host.Convert(model.Text());
  EXPECT_EQ(host.LinesThatBegin("This model").size(), 0u);
  model.Bone("second", bone);
  host.Convert(model.Text());
  EXPECT_EQ(host.LinesThatBegin("This model").size(), 1u);
}

TEST(MeshFile, IsReportedInTwentiethsOfItsVertices) {
  struct {
    size_t points, lines;
    const char *second, *last;
  } const cases[] = {{3, 3, "5", "10"},   {19, 19, "5", "90"},  {20, 20, "5", "95"}, {21, 21, "5", "100"},
                     {40, 20, "5", "95"}, {41, 21, "5", "100"}, {59, 30, "5", "145"}};
  for (const auto& [points, lines, second, last] : cases) {
    Character model;
    model.Mesh("Body", std::vector<double>(3 * points), {0, 1, -3});
    TestHost host;
    ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
    const auto told = host.LinesThatBegin("Writing Mesh: ");
    ASSERT_EQ(told.size(), lines) << points;
    EXPECT_EQ(told[0], "Writing Mesh: 0% done");
    EXPECT_EQ(told[1], "Writing Mesh: "s + second + "% done");
    EXPECT_EQ(told.back(), "Writing Mesh: "s + last + "% done");
  }
}

TEST(MeshFile, GivesPointsOfNoTriangleTheDiagonalAsNormal) {
  Character model;
  model.Mesh("Body", {0, 0, 0, 1, 0, 0, 0, 1, 0, 5, 5, 5}, {0, 1, -3});
  TestHost host;
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_THAT(host.Mesh("Body").vertices[3].normal, ElementsAre(0.57734998f, 0.57734998f, 0.57734998f));
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

TEST(TextureCoordinates, OfControlPointsAreTakenDirectlyOrThroughTheirIndices) {
  for (const bool indexed : {false, true}) {
    Character model;
    const auto mesh = model.Triangle("Body");
    support::FbxRecord& element =
        mesh.geometry->Add({"LayerElementUV",
                            {0},
                            {{"MappingInformationType", {"ByVertice"}},
                             {"ReferenceInformationType", {indexed ? "IndexToDirect" : "Direct"}},
                             support::Doubles("UV", {0.125, 0, 0.25, 0, 0.5, 0})}});
    if (indexed) element.Add(support::Ints("UVIndex", {2, 0, -1}));
    TestHost host;
    ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
    const auto vertices = host.Mesh("Body").vertices;
    EXPECT_EQ(vertices[0].u, indexed ? 0.5f : 0.125f);
    EXPECT_EQ(vertices[1].u, indexed ? 0.125f : 0.25f);
    EXPECT_EQ(vertices[2].u, indexed ? 0.0f : 0.5f);
    EXPECT_EQ(vertices[2].v, 1.0f);
    EXPECT_EQ(host.LinesThatBegin(">>> Error getting").size(), 0u);
  }
}

TEST(TextureCoordinates, AreThoseThatTheDiffusePictureNames) {
  for (const char* uvSet : {"", "plain", "decal", "none"}) {
    Character model;
    const auto mesh = model.Triangle("Body");
    for (const auto& [number, name, u] : {std::tuple(0, "plain", 0.25), std::tuple(1, "decal", 0.75)}) {
      mesh.geometry->Add({"LayerElementUV",
                          {number},
                          {{"Name", {name}},
                           {"MappingInformationType", {"ByPolygonVertex"}},
                           {"ReferenceInformationType", {"Direct"}},
                           support::Doubles("UV", {u, 0, u, 0, u, 0})}});
    }
    model.Material(mesh);
    model.Texture(model.Material(mesh), "skin.tga")
        .Add(support::Properties({support::Property("UVSet", {uvSet})}));
    TestHost host;
    ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
    EXPECT_EQ(host.Mesh("Body").vertices[0].u, std::string_view(uvSet) == "decal" ? 0.75f : 0.25f) << uvSet;
  }
}

TEST(TextureCoordinates, ThatAreMissingAreReportedForTheFirstMeshOnly) {
  Character model;
  for (const char* name : {"Sound", "F:irst", "Second"}) {
    const auto mesh = model.Triangle(name);
    const double last = std::string_view(name) == "Sound" ? 2 : 9;
    Character::Coordinates(mesh, {0, 0, 1, 0, 0, 1}, {0, last, last});
  }
  TestHost host;
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(host.Told(">>> Error getting UVs (Texture Coordinates)"), 2u);
  EXPECT_THAT(host.LinesThatBegin(">>> for"), ElementsAre(">>> for F:irst", ">>> for F:irst"));
  EXPECT_EQ(host.Mesh("Second").vertices[1].v, 1.0f);
}

TEST(TextureCoordinates, ThatAreMissingAreReportedForNodesWithoutAName) {
  Character model;
  Character::Coordinates(model.Triangle(""), {0, 0}, {0, 0, -1});
  TestHost host;
  host.Convert(model.Text());
  EXPECT_THAT(host.LinesThatBegin(">>> for"), ElementsAre(">>> for un-named Node"));
}

}  // namespace
