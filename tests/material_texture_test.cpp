// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/character.h"
#include "support/test_host.h"

namespace {

using support::Character;
using support::TestHost;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// A triangle with texture coordinates, a material and its texture.
Character Textured(const std::string& fileName, const std::string& relativeFileName = "") {
  Character model;
  const auto mesh = model.Triangle("Body");
  Character::Coordinates(mesh, {0, 0, 1, 0, 0, 1}, {0, 1, 2});
  model.Texture(model.Material(mesh), fileName, relativeFileName);
  return model;
}

std::string XrfOf(TestHost& host, const Character& model) {
  EXPECT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  return host.ReadPackage()["Body.xrf"];
}

TEST(Textures, AreNamedByTheLastPartOfTheirPathUpToItsFirstPoint) {
  struct {
    const char *fileName, *relativeFileName, *map;
  } const cases[] = {{"C:\\art\\skins/boy/skin.png", "other.tga", "skin.tga"},
                     {"/art/skin.tga", "", "skin.tga"},
                     {"", "maps\\cloth.final.jpg", "cloth.tga"},
                     {"a/b\\skin.tga.png", "", "skin.tga.png"},
                     {"skin", "", "skin.tga"},
                     {"maps\\SKIN.TGA", "", "SKIN.tga"},
                     {"maps/", "", ".tga"}};
  for (const auto& [fileName, relativeFileName, map] : cases) {
    TestHost host;
    EXPECT_THAT(XrfOf(host, Textured(fileName, relativeFileName)), HasSubstr("NUMMAPS=\"1\"")) << fileName;
    EXPECT_THAT(XrfOf(host, Textured(fileName, relativeFileName)),
                HasSubstr("   <MAP>" + std::string(map) + "</MAP>\n"))
        << fileName;
  }
}

TEST(Textures, ThatArePicturesOfTheRightKindArePackedWithoutAskingTheHost) {
  TestHost host;
  host.folder.Write("skin.tga", "picture");
  XrfOf(host, Textured("C:\\art\\skin.tga"));
  EXPECT_EQ(host.ReadPackage().Names(), "skin.tga skeleton.csf model.xfg Body.cmf Body.xrf");
  EXPECT_EQ(host.ReadPackage()["skin.tga"], "picture");
  EXPECT_THAT(host.textureRequests, ElementsAre());
  EXPECT_TRUE(host.Has("skin.tga"));
}

TEST(Textures, ThatAreMissingButOfTheRightKindAreLeftOutSilently) {
  TestHost host;
  EXPECT_THAT(XrfOf(host, Textured("skin.tga")), HasSubstr("<MAP>skin.tga</MAP>"));
  EXPECT_EQ(host.ReadPackage().Names(), "skeleton.csf model.xfg Body.cmf Body.xrf");
  EXPECT_THAT(host.textureRequests, ElementsAre());
  EXPECT_EQ(host.LinesThatBegin(">>> NEED").size(), 0u);
}

TEST(Textures, OfAnotherKindAreLeftToTheHost) {
  enum class Answer { None, Yes, No, NoCallback };
  struct {
    bool exists;
    Answer answer;
    bool isPacked;
    const char* request;
  } const cases[] = {{false, Answer::None, false, "art\\skin.png is missing"},
                     {true, Answer::None, true, "art\\skin.png exists"},
                     {false, Answer::Yes, true, "art\\skin.png is missing"},
                     {true, Answer::No, false, "art\\skin.png exists"},
                     {true, Answer::NoCallback, true, nullptr},
                     {false, Answer::NoCallback, false, nullptr}};
  for (const auto& [exists, answer, isPacked, request] : cases) {
    TestHost host;
    if (exists) host.folder.Write("skin.tga", "picture");
    host.convertsTextures = answer == Answer::Yes;
    host.forgetsTextures = answer == Answer::No;
    if (answer == Answer::NoCallback) host.job.textureCallback = nullptr;
    XrfOf(host, Textured("art\\skin.png"));
    EXPECT_EQ(host.ReadPackage().Count("skin.tga"), isPacked ? 1u : 0u);
    if (request) {
      EXPECT_THAT(host.textureRequests, ElementsAre(request));
    }
    EXPECT_EQ(host.Told(">>> NEED TO MANUALLY CONVERT:"), isPacked ? 0u : 1u);
    EXPECT_EQ(host.Told(">>>> art\\skin.png to skin.tga"), isPacked ? 0u : 1u);
  }
}

TEST(Textures, ThatSeveralMaterialsShareArePackedOnce) {
  Character model;
  for (const char* name : {"Body", "Hat"}) {
    const auto mesh = model.Triangle(name);
    Character::Coordinates(mesh, {0, 0}, {0, 0, 0});
    model.Texture(model.Material(mesh), "skin.tga");
  }
  TestHost host;
  host.folder.Write("skin.tga", "picture");
  host.Convert(model.Text());
  EXPECT_EQ(host.ReadPackage().Count("skin.tga"), 1u);
}

TEST(Textures, CountOnlyForMeshesWithTextureCoordinates) {
  Character model;
  const auto plain = model.Triangle("Body");
  model.Texture(model.Material(plain), "skin.png");
  TestHost host;
  const std::string text = XrfOf(host, model);
  EXPECT_THAT(text, HasSubstr("NUMMAPS=\"0\""));
  EXPECT_THAT(text, Not(HasSubstr("MAP>")));
  EXPECT_THAT(host.textureRequests, ElementsAre());
}

TEST(Textures, MissingFromAMaterialLeaveAnEmptyMap) {
  Character model;
  const auto mesh = model.Triangle("Body");
  Character::Coordinates(mesh, {0, 0}, {0, 0, 0});
  model.Material(mesh);
  TestHost host;
  EXPECT_THAT(XrfOf(host, model), HasSubstr("   <MAP></MAP>\n</MATERIAL>"));
}

}  // namespace
