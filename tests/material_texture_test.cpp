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
    EXPECT_THAT(XrfOf(host, Textured(fileName, relativeFileName)),
                HasSubstr("   <MAP>" + std::string(map) + "</MAP>\n"))
        << fileName;
  }
}

TEST(Textures, OfAnotherKindAreLeftToTheHost) {
  enum class Answer { None, Yes, No, NoCallback };
  struct {
    const char* picture;
    bool exists;
    Answer answer;
    bool isPacked;
    const char* request;
  } const cases[] = {{"art\\skin.tga", true, Answer::No, true, ""},
                     {"art\\skin.tga", false, Answer::Yes, false, ""},
                     {"art\\skin.png", false, Answer::None, false, "art\\skin.png is missing"},
                     {"art\\skin.png", true, Answer::None, true, "art\\skin.png exists"},
                     {"art\\skin.png", false, Answer::Yes, true, "art\\skin.png is missing"},
                     {"art\\skin.png", true, Answer::No, false, "art\\skin.png exists"},
                     {"art\\skin.png", true, Answer::NoCallback, true, ""},
                     {"art\\skin.png", false, Answer::NoCallback, false, ""}};
  for (const auto& [picture, exists, answer, isPacked, request] : cases) {
    TestHost host;
    if (exists) host.folder.Write("skin.tga", "picture");
    host.convertsTextures = answer == Answer::Yes;
    host.forgetsTextures = answer == Answer::No;
    if (answer == Answer::NoCallback) host.job.textureCallback = nullptr;
    XrfOf(host, Textured(picture));
    EXPECT_EQ(host.ReadPackage().Count("skin.tga"), isPacked ? 1u : 0u);
    EXPECT_EQ(host.textureRequests, std::vector<std::string>(*request ? 1 : 0, request));
    const size_t told = isPacked || std::string_view(picture).ends_with("tga") ? 0 : 1;
    EXPECT_EQ(host.Told(">>> NEED TO MANUALLY CONVERT:"), told);
    EXPECT_EQ(host.Told(">>>> art\\skin.png to skin.tga"), told);
  }
}

TEST(Textures, CountOnlyForMeshesWithTextureCoordinates) {
  Character model;
  const auto mesh = model.Triangle("Body");
  const auto material = model.Material(mesh);
  model.Texture(material, "skin.png");
  TestHost host;
  EXPECT_THAT(XrfOf(host, model), testing::AllOf(HasSubstr("NUMMAPS=\"0\""), Not(HasSubstr("MAP>"))));
  EXPECT_THAT(host.textureRequests, ElementsAre());
}

TEST(Textures, MissingFromAMaterialLeaveAnEmptyMap) {
  Character model;
  const auto mesh = model.Triangle("Body");
  Character::Coordinates(mesh, {0, 0}, {0, 0, 0});
  model.Material(mesh);
  TestHost host;
  EXPECT_THAT(XrfOf(host, model),
              testing::AllOf(HasSubstr("NUMMAPS=\"1\""), HasSubstr("   <MAP></MAP>\n</MATERIAL>")));
}

TEST(Textures, OfTheBaseColourServeWhenAskedForWhateverItsNameIs) {
  struct {
    const char* shading;
    std::vector<const char*> properties;
    std::string map;
  } const cases[] = {
      {"unknown", {"Maya|TEX_normal_map", "Maya|TEX_color_map"}, "1"},
      {"unknown", {"3dsMax|Parameters|base_color_map", "3dsMax|Parameters|coat_color_map"}, "0"},
      {"", {"3dsMax|main|baseColorMap"}, "0"},
      {"phong", {"NormalMap", "color", "Maya|baseColor"}, "2"},
      {"phong", {"base_color_texture", "DiffuseColor"}, "1"},
      {"unknown", {"3dsMax|Parameters|coat_color_map", "Maya|specularColor"}, ""}};
  for (const auto& [shading, properties, map] : cases) {
    for (const bool isAsked : {false, true}) {
      Character model;
      const auto mesh = model.Triangle("Body");
      Character::Coordinates(mesh, {0, 0, 1, 0, 0, 1}, {0, 1, 2});
      const auto material = model.Material(mesh, shading);
      for (size_t i = 0; i < properties.size(); ++i) {
        model.Texture(material, std::to_string(i) + ".png", "", properties[i]);
      }
      TestHost host;
      host.job.settings.findsBaseColours = isAsked;
      const std::string xrf = XrfOf(host, model);
      const bool isFound = !map.empty() && (isAsked || properties.back() == std::string("DiffuseColor"));
      EXPECT_THAT(xrf, HasSubstr("<MAP>" + (isFound ? map + ".tga" : "") + "</MAP>")) << properties[0];
      const bool isWhite = isFound && shading != std::string("phong");
      EXPECT_EQ(xrf.find("<DIFFUSE>255 255 255 255<") != std::string::npos, isWhite) << properties[0];
    }
  }
}

TEST(Textures, OfLayersGiveTheLowestPictureWhereItIsAskedFor) {
  for (const bool isAsked : {false, true}) {
    Character model;
    const auto mesh = model.Triangle("Body");
    Character::Coordinates(mesh, {0, 0, 1, 0, 0, 1}, {0, 1, 2});
    model.LayeredTexture(model.Material(mesh), {"", "skin.png", "dirt.png"});
    TestHost host;
    host.job.settings.findsBaseColours = isAsked;
    EXPECT_THAT(XrfOf(host, model), HasSubstr(isAsked ? "<MAP>skin.tga</MAP>" : "<MAP></MAP>"));
  }
}

}  // namespace
