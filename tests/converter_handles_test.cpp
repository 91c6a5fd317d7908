// SPDX-License-Identifier: MIT
//
// The converters that hosts hold, through the header for C++ and as a C host sees them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <thread>

#include "fbx_to_ts3d.hpp"
#include "support/character.h"
#include "support/json_schemas.h"
#include "support/test_host.h"

namespace {

namespace fs = std::filesystem;
using fbxToTs3d::Converter;
using support::Character;
using support::Package;
using support::TestHost;
using testing::ElementsAre;
using testing::HasSubstr;

/// With a second mesh, which no final settings name.
std::string RiggedModel() {
  Character model;
  const auto root = model.Bone("root");
  model.Bone("L_foot", root);
  const auto tip = model.Bone("tip", root);
  auto body = model.Triangle("Body");
  model.Weights(body, root, {0, 1, 2}, {1, 1, 1});
  Character::Coordinates(body, {0, 0}, {0, 0, 0});
  model.Texture(model.Material(body), "skin.tga");
  auto hat = model.Triangle("Hat");
  model.Weights(hat, root, {0, 1, 2}, {1, 1, 1});
  model.Weights(hat, tip, {0}, {2});
  return model.Text();
}

/// The code that `call` throws; 0 when it does not.
template <typename Call>
int32_t ResultOf(const Call& call) {
  try {
    call();
    return 0;
  } catch (const fbxToTs3d::Error& error) {
    EXPECT_STRNE(error.what(), "");
    return error.Result();
  }
}

TEST(Converters, GiveThePackageOfTheClassicFunctionsAndLeaveNothingElse) {
  TestHost host;
  ASSERT_EQ(host.Convert(RiggedModel(), "Actor (Boy).fbx"), ts3d::ConversionResult::Success);
  const auto members = host.ReadPackage("Actor (Boy).fbx").Members();
  fs::create_directories(host.folder.Path("h\xc3\xa9/in"));
  fs::create_directory(host.folder.Path("out"));
  host.folder.Write("h\xc3\xa9/in/Actor (Boy).fbx", RiggedModel());
  Converter converter;
  converter.Convert("h\xc3\xa9/in\\Actor (Boy).fbx");
  EXPECT_EQ(host.folder.Names("h\xc3\xa9/in"), "Actor (Boy).czp Actor (Boy).fbx");
  EXPECT_EQ(Package(host.folder.Path("h\xc3\xa9/in/Actor (Boy).czp")).Members(), members);
  converter.ConvertMemory("x/Actor (Boy).fbx", RiggedModel(), "out/memory.czp");
  EXPECT_EQ(Package(host.folder.Path("out/memory.czp")).Members(), members);
  std::string package;
  converter.options.onPackage = [&](const void* bytes, size_t count) {
    package.append(static_cast<const char*>(bytes), count);
  };
  converter.ConvertMemory("Actor (Boy).fbx", RiggedModel());
  EXPECT_EQ(Package(host.folder.Write("taken.czp", package)).Members(), members);
  EXPECT_EQ(host.folder.Names("out"), "memory.czp");
}

TEST(Converters, TakeEveryOption) {
  const TestHost host;
  Converter converter;
  converter.options.rotationX = 7;
  converter.options.actorType = 4;
  converter.options.meshOptions = "!Body";
  converter.options.boneRenames = "root=hip";
  converter.options.repairs = FBX_TO_TS3D_ATTACH_RIGID | FBX_TO_TS3D_REPAIR_AS_NEEDED;
  converter.options.packageLevel = -1;
  converter.options.mostInfluences = 1;
  converter.ConvertMemory("m.fbx", RiggedModel(), "m.czp");
  EXPECT_THAT(support::ReadCmf(Package(host.folder.Path("m.czp"))["Hat.cmf"]).vertices[0].influences,
              testing::ElementsAre(testing::Pair(2, 1.0f)));
  const std::string document = Package(host.folder.Path("m.czp"))["m.xfg"];
  for (const char* part : {"actor (girl)", "<rotation x=\"7\" y=\"0\"/>", "backfacing=\"both\"",
                           "<bone_rename old=\"root\" new=\"hip\"/>"}) {
    EXPECT_THAT(document, HasSubstr(part));
  }
  EXPECT_EQ(nlohmann::json::parse(converter.ResultJson())["repairs"], nlohmann::json::array());
  const auto stored = fs::file_size(host.folder.Path("m.czp"));
  converter.options.packageLevel = 9;
  converter.ConvertMemory("m.fbx", RiggedModel(), "m.czp");
  EXPECT_LT(fs::file_size(host.folder.Path("m.czp")), stored);
  converter.options.exclusions = "x|body";
  EXPECT_EQ(ResultOf([&] { converter.ConvertMemory("m.fbx", RiggedModel(), "m.czp"); }), FBX_TO_TS3D_OK);
  EXPECT_THAT(Package(host.folder.Path("m.czp")).Names(), testing::Not(HasSubstr("Body.cmf")));
}

TEST(Converters, ApplyFinalSettingsToThePackageAlone) {
  const TestHost host;
  Converter converter;
  converter.options.meshOptions = "!Hat";
  converter.ConvertMemory("Actor (Boy).fbx", RiggedModel(), "boy.czp");
  // Each call says all there is to say, so that nothing of an earlier one stays.
  converter.Finish("boy.czp", {70, 3, 4, "root=old", "Body=Old|Hat=~Old"});
  converter.Finish("boy.czp", {50, 1, 2, "root=hip", "Body=~Suit"});
  const Package package(host.folder.Path("boy.czp"));
  EXPECT_EQ(package.Count("Actor (Boy).xfg"), 3u);
  EXPECT_THAT(package["Actor (Boy).xfg"],
              testing::Not(testing::AnyOf(HasSubstr("Old"), HasSubstr("old\"/>"))));
  for (const char* part : {"<scale>0.500000</scale>", "<rotation x=\"1\" y=\"2\"/>", "<switch name=\"Suit\">",
                           "<bone_rename old=\"L_foot\" new=\"left foot\"/>", "<glance_adjust>-17",
                           "<mesh name=\"Hat\" file=\"Hat.cmf\" backfacing=\"both\"/>"}) {
    EXPECT_THAT(package["Actor (Boy).xfg"], HasSubstr(part));
  }
  Converter other;
  other.Finish("boy.czp", {50, 1, 2, "root=hip", "Body=~Suit"});
  EXPECT_EQ(Package(host.folder.Path("boy.czp"))["Actor (Boy).xfg"], package["Actor (Boy).xfg"]);
  EXPECT_EQ(host.FileNames(), "boy.czp");
  EXPECT_EQ(ResultOf([&] { other.Finish("none.czp", {}); }), FBX_TO_TS3D_DOCUMENT_UNREADABLE);
}

TEST(Converters, TellWhatFailedAndWhatIsWrongWithoutAConsole) {
  const TestHost host;
  host.folder.Write("bad.fbx", "no model");
  testing::internal::CaptureStdout();
  Converter converter;
  try {
    converter.Convert("bad.fbx");
    ADD_FAILURE() << "converted";
  } catch (const fbxToTs3d::Error& error) {
    EXPECT_EQ(error.Result(), FBX_TO_TS3D_LOAD_FAILED);
    EXPECT_STREQ(error.what(), "the file is of no format that is read");
  }
  EXPECT_EQ(ResultOf([&] { converter.Convert("none.fbx"); }), FBX_TO_TS3D_NO_FILE);
  EXPECT_EQ(ResultOf([&] { converter.ConvertMemory("m.fbx", RiggedModel(), "no/m.czp"); }),
            FBX_TO_TS3D_OUTPUT_FAILED);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  converter.ConvertMemory("m.fbx", RiggedModel(), "m.czp");
  const auto done = nlohmann::json::parse(converter.ResultJson());
  EXPECT_EQ(done["triangles"], 2);
  EXPECT_EQ(done["members"][1]["name"], "m.xfg");
  EXPECT_THAT(done["notices"], testing::Contains(">>> No Defined Bind Pose!"));
  EXPECT_EQ(done["messages"][0]["code"], "texture-missing");
  EXPECT_EQ(done["messages"][1]["code"], "no-bind-pose-harmless");
  const auto check = nlohmann::json::parse(converter.CheckMemory("m.fbx", RiggedModel()));
  support::ExpectMatchesSchema(done);
  support::ExpectMatchesSchema(check);
  const auto& checked = check["check"];
  EXPECT_EQ(checked["bones"][1]["name"], "L_foot");
  EXPECT_EQ(host.FileNames(), "bad.fbx m.czp");
}

TEST(Converters, TellTheirProgressAndEndWhenTheyAreAsked) {
  const TestHost host;
  Converter converter;
  std::vector<double> told;
  converter.options.onProgress = [&](double fraction) { return told.push_back(fraction), true; };
  converter.ConvertMemory("m.fbx", RiggedModel(), "m.czp");
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
  EXPECT_EQ(told.front(), 0.0);
  EXPECT_THAT(told, testing::Contains(testing::AllOf(testing::Gt(0.0), testing::Lt(0.25)))) << "of loading";
  EXPECT_EQ(told.back(), 1.0);
  for (const double end : told) {
    fs::remove("m.czp");
    converter.options.onProgress = [&](double fraction) { return fraction < end; };
    EXPECT_THROW(converter.ConvertMemory("m.fbx", RiggedModel(), "m.czp"), fbxToTs3d::Cancelled) << end;
    EXPECT_EQ(host.FileNames(), "") << end;
  }
  converter.options.onProgress = [](double) -> bool { throw std::logic_error("the host's"); };
  EXPECT_THROW(converter.ConvertMemory("m.fbx", RiggedModel(), "m.czp"), std::logic_error);
}

TEST(Converters, RefuseWhatMakesNoSense) {
  const TestHost host;
  host.folder.Write("m.czp", RiggedModel());
  Converter converter;
  const auto invalid = [&](const auto& call) { return ResultOf(call) == FBX_TO_TS3D_INVALID_ARGUMENT; };
  EXPECT_TRUE(invalid([&] { converter.Convert(""); }));
  EXPECT_TRUE(invalid([&] { converter.Convert("m.czp"); })) << "over the model";
  EXPECT_TRUE(invalid([&] { converter.ConvertMemory("", RiggedModel(), "x.czp"); }));
  EXPECT_TRUE(invalid([&] { converter.ConvertMemory("x.fbx", RiggedModel()); })) << "nowhere to go";
  converter.options.packageLevel = 10;
  EXPECT_TRUE(invalid([&] { converter.ConvertMemory("x.fbx", RiggedModel(), "x.czp"); }));
  EXPECT_EQ(FbxToTs3dConvert(nullptr, "m.fbx", nullptr), FBX_TO_TS3D_INVALID_ARGUMENT);
  FbxToTs3dConverter* plain = FbxToTs3dCreate();
  FbxToTs3dOptions older{};
  older.size = 8;  // a host that knows nothing but the first option
  EXPECT_EQ(FbxToTs3dSetOptions(plain, &older), FBX_TO_TS3D_OK);
  older.size = 0;
  EXPECT_EQ(FbxToTs3dSetOptions(plain, &older), FBX_TO_TS3D_INVALID_ARGUMENT);
  EXPECT_EQ(FbxToTs3dDestroy(plain), FBX_TO_TS3D_OK);
  EXPECT_EQ(host.FileNames(), "m.czp");
}

int32_t ConvertClassic(const std::string& model, FbxToTs3dStatusCallback status, void* context) {
  return ConvertFBXFile(model.c_str(), 0, 0, 0, 0, nullptr, nullptr, nullptr, context, status, nullptr);
}

TEST(Calls, OutOfACallbackAreRefusedUnlessTheyAreAnothersAndThoseOfThreadsWait) {
  const TestHost host;
  host.folder.Write("m.fbx", RiggedModel());
  const std::string model = host.ModelPath("m.fbx");
  Converter converter, other;
  int32_t own = 0;
  converter.options.onLine = [&](const char*) {
    own = ResultOf([&] { converter.ConvertMemory("m.fbx", RiggedModel(), "own.czp"); });
    other.ConvertMemory("m.fbx", RiggedModel(), "other.czp");
  };
  converter.ConvertMemory("m.fbx", RiggedModel(), "m.czp");
  EXPECT_EQ(own, FBX_TO_TS3D_BUSY);
  struct Classic {
    std::string model;
    int32_t inner = 0;
  } classic{model};
  const auto callAgain = [](void* context, const char*) {
    auto& self = *static_cast<Classic*>(context);
    self.inner = ConvertClassic(self.model, nullptr, nullptr);
  };
  EXPECT_EQ(ConvertClassic(model, callAgain, &classic), FBX_TO_TS3D_OK);
  EXPECT_EQ(classic.inner, FBX_TO_TS3D_BUSY);
  std::vector<std::thread> threads;
  std::vector<int32_t> results(8, -1);
  for (int32_t& result : results) {
    threads.emplace_back([&] { result = ConvertClassic(model, nullptr, nullptr); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(results, testing::Each(FBX_TO_TS3D_OK));
}

}  // namespace
