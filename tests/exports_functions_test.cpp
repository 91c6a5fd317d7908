// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fbx_to_ts3d.h"
#include "support/character.h"
#include "support/test_host.h"

extern "C" int32_t ConvertFromC(const char* path, int32_t* vertexTotal, int32_t* polygonTotal);

namespace {

using support::Character;
using support::TestHost;
using testing::ElementsAre;
using testing::HasSubstr;

/// A host that calls the exported functions; the job behind them is the library's own.
struct ExportHost : TestHost {
  explicit ExportHost(const std::string& modelName = "model.fbx") : name(modelName) {
    Character model;
    const auto root = model.Bone("root");
    model.Bone("L_foot", root);
    auto body = model.Triangle("Body");
    model.Weights(body, root, {0, 1, 2}, {1, 1, 1});
    Character::Coordinates(body, {0, 0}, {0, 0, 0});
    model.Texture(model.Material(body), "skin.png");
    folder.Write(name, model.Text());
  }
  std::string Path() const { return ModelPath(name); }
  int32_t Convert3(int32_t finishOnly = 0, int32_t mode = 0, const char* list = nullptr,
                   const char* renames = nullptr, float scale = 0) {
    return ConvertFBXFile3(Path().c_str(), scale, 20, -30, finishOnly, renames, &vertexTotal, &polygonTotal,
                           this, job.status.statusCallback, job.textureCallback, mode, list);
  }
  int32_t Finish(const char* renames, const char* meshes) {
    return ConvertFBXFileFinish(Path().c_str(), 50, 1, 2, renames, meshes, this, job.status.statusCallback);
  }
  float NormalZ() const { return Mesh("Body").vertices[0].normal[2]; }

  std::string name;
  int32_t vertexTotal = 99, polygonTotal = 99;
};

TEST(ExportedFunctions, CanBeCalledFromC) {
  const TestHost host;
  int32_t vertices = 99, polygons = 99;
  EXPECT_EQ(ConvertFromC(host.ModelPath("none.fbx").c_str(), &vertices, &polygons), FBX_TO_TS3D_NO_FILE);
  EXPECT_EQ(vertices, 99);
  EXPECT_EQ(polygons, 99);
  EXPECT_EQ(ConvertFromC(nullptr, nullptr, nullptr), FBX_TO_TS3D_NO_FILE);
  EXPECT_EQ(ConvertFBXFileFinish(nullptr, 0, 0, 0, nullptr, nullptr, nullptr, nullptr),
            FBX_TO_TS3D_DOCUMENT_UNREADABLE);
}

TEST(ExportedFunctions, HandBackTheTotalsUnlessNothingWasLoaded) {
  ExportHost host;
  ASSERT_EQ(host.Convert3(), FBX_TO_TS3D_OK);
  EXPECT_EQ(host.vertexTotal, 3);
  EXPECT_EQ(host.polygonTotal, 1);
  EXPECT_THAT(host.textureRequests, ElementsAre("skin.png is missing"));
  host.vertexTotal = host.polygonTotal = 99;
  host.folder.Write(host.name, "no model");
  testing::internal::CaptureStdout();
  EXPECT_EQ(host.Convert3(), FBX_TO_TS3D_LOAD_FAILED);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(host.vertexTotal, 99);
  EXPECT_EQ(host.polygonTotal, 99);
  host.folder.Write(host.name, Character().Text());
  EXPECT_EQ(host.Convert3(), FBX_TO_TS3D_NO_MESH);
  EXPECT_EQ(host.vertexTotal, 0);
  EXPECT_EQ(host.polygonTotal, 0);
}

TEST(ExportedFunctions, FinishWhenTheLowByteOfTheFlagIsSet) {
  ExportHost host;
  ASSERT_EQ(host.Convert3(0x100), FBX_TO_TS3D_OK);
  EXPECT_EQ(host.Told("Loading FBX Model"), 1u);
  host.vertexTotal = host.polygonTotal = 99;
  host.lines.clear();
  EXPECT_EQ(host.Convert3(0x201, 0, nullptr, "root=r", 150), FBX_TO_TS3D_OK);
  EXPECT_EQ(host.vertexTotal, 3) << "of the last conversion";
  const auto package = host.ReadPackage();
  EXPECT_EQ(package.Count("model.xfg"), 2u);
  EXPECT_THAT(package["model.xfg"], HasSubstr("<scale>1.500000</scale>"));
  EXPECT_THAT(package["model.xfg"], HasSubstr("<bone_rename old=\"root\" new=\"r\"/>"));
  EXPECT_EQ(host.Convert3(0x80), FBX_TO_TS3D_DOCUMENT_UNREADABLE);
  EXPECT_EQ(host.vertexTotal, 0);
}

TEST(ExportedFunctions, OfFewerArgumentsPassNoMeshOptions) {
  ExportHost host;
  ASSERT_EQ(host.Convert3(0, 2, "Body"), FBX_TO_TS3D_OK);
  EXPECT_EQ(host.NormalZ(), -1.0f);
  const auto convert2 = [&](int32_t mode) {
    return ConvertFBXFile2(host.Path().c_str(), 0, 1, 2, 0, nullptr, nullptr, &host.polygonTotal, &host,
                           host.job.status.statusCallback, nullptr, mode);
  };
  ASSERT_EQ(convert2(1), FBX_TO_TS3D_OK);
  EXPECT_EQ(host.NormalZ(), -1.0f);
  ASSERT_EQ(convert2(2), FBX_TO_TS3D_OK);
  EXPECT_EQ(host.NormalZ(), 1.0f) << "the list of the call before is gone";
  EXPECT_EQ(host.Mesh("Body").threadId, 151) << "counted anew";
  ASSERT_EQ(convert2(1), FBX_TO_TS3D_OK);
  ASSERT_EQ(ConvertFBXFile(host.Path().c_str(), 0, 1, 2, 0, "root=hip", &host.vertexTotal, nullptr, &host,
                           nullptr, nullptr),
            FBX_TO_TS3D_OK);
  EXPECT_EQ(host.NormalZ(), 1.0f) << "so is its mode";
  EXPECT_EQ(host.vertexTotal, 3);
  EXPECT_THAT(host.Document(), HasSubstr("<rotation x=\"2\" y=\"1\"/>"));
  EXPECT_THAT(host.Document(), HasSubstr("<bone_rename old=\"root\" new=\"hip\"/>"));
}

TEST(ExportedFinish, SpeaksForTheBonesAndTheActorOfTheLastConversion) {
  ExportHost host("Actor (Boy).fbx");
  ASSERT_EQ(host.Convert3(), FBX_TO_TS3D_OK);
  ASSERT_EQ(host.Finish("root=hip", "Body=~Suit"), FBX_TO_TS3D_OK);
  const std::string document = host.ReadPackage(host.name)["Actor (Boy).xfg"];
  EXPECT_THAT(document, HasSubstr("<scale>0.500000</scale>"));
  EXPECT_THAT(document, HasSubstr("<rotation x=\"2\" y=\"1\"/>"));
  EXPECT_THAT(document, HasSubstr("\t<bone_rename old=\"root\" new=\"hip\"/>\n"
                                  "\t<bone_rename old=\"L_foot\" new=\"left foot\"/>\n"));
  EXPECT_THAT(document, HasSubstr("<material_file name=\"Suit\" threadID=\"151\">Body.xrf"));
  EXPECT_THAT(document, HasSubstr("<switch name=\"Suit\">"));
  EXPECT_THAT(document, HasSubstr("<glance_adjust>-17</glance_adjust>"));
}

}  // namespace
