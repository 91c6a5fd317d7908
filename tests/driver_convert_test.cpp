// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/detect_actor_type.h"
#include "driver/final_settings.h"
#include "skeleton/skeleton_state.h"
#include "support/character.h"
#include "support/test_host.h"

namespace {

using support::Character;
using support::ReadWholeFile;
using support::TestHost;
using testing::ElementsAre;
using testing::HasSubstr;
using ts3d::ActorType;
using ts3d::ConversionResult;

std::string OneTriangle() {
  Character model;
  model.Triangle("Body");
  return model.Text();
}

TEST(ShortNames, WriteNothingIntoTheParentFolder) {
  TestHost host;
  std::filesystem::create_directory(host.folder.Path("deep"));
  for (const char* name : {"deep/m", "deep/mod"}) host.folder.Write(name, OneTriangle());
  const std::string document = ReadWholeFile(host.folder.Write("deexfg", "<cal_config></cal_config>"));
  for (const std::string& path : {host.ModelPath("deep\\m"), host.folder.Path("deep/m")}) {
    EXPECT_EQ(RunConversion(host.job, {path, {}}), ConversionResult::PackageFailed) << path;
    EXPECT_EQ(ApplyFinalSettings(host.job, {path, 1.0f, ""}), ts3d::ConversionResult::DocumentUnreadable);
    EXPECT_FALSE(std::filesystem::exists(host.folder.Path("deeczp")));
  }
  EXPECT_EQ(ReadWholeFile(host.folder.Path("deexfg")), document);
  EXPECT_EQ(RunConversion(host.job, {host.ModelPath("deep\\mod"), {}}), ConversionResult::Success);
  EXPECT_TRUE(std::filesystem::exists(host.folder.Path("deep/czp")));
}

TEST(ActorTypes, ComeFromThePathInAnyLetterCase) {
  const std::pair<ActorType, std::vector<const char*>> cases[] = {
      {ActorType::Female, {"C:\\models\\Actor (Female).FBX", "m\\actor (shefemale).fbx"}},
      {ActorType::Male, {"C:\\models\\actor (male).fbx", "m\\ACTOR (old male).fbx"}},
      {ActorType::None,
       {"m\\actor (oldmale).fbx", "m\\(boy).fbx", "actor (boy).fbx", "m\\actor(boy).fbx", "m\\actor.fbx",
        "actor (x)\\m (girl).fbx", ""}},
      {ActorType::Boy,
       {"m\\actor (boy).fbx", "m\\Actor (Male) (Boy).fbx", "m\\Actor (Male Boy).fbx",
        "m\\actor (schoolboy).fbx", "m\\actor (\\x (boy)\\y.fbx"}},
      {ActorType::Teenager, {"m\\actor (preteen).fbx", "m\\actor (a teenager).fbx"}},
      {ActorType::Baby, {"m\\actor (baby).fbx", "m\\actor (boy)\\actor (baby).fbx"}},
      {ActorType::Girl, {"actor (x)\\actor (girl).fbx", "m\\actor (girl 2).fbx"}}};
  for (const auto& [type, paths] : cases) {
    for (const char* path : paths) EXPECT_EQ(ts3d::DetectActorType(path), type) << path;
  }
}

TEST(Conversion, TellsItsStepsInOrder) {
  TestHost host;
  ASSERT_EQ(host.Convert(OneTriangle()), ConversionResult::Success);
  EXPECT_THAT(
      host.lines,
      ElementsAre("Initializing FBX Engine", "Loading FBX Model", "Model Successfully Loaded",
                  "FBX version number for this SDK 7.7.0", "FBX version number for this model 7.4.0",
                  "Generating Skeleton", "Writing CSF Skeleton", ">>> No Defined Bind Pose!",
                  ">>> Skeleton may not import correctly!",
                  ">>> This is NOT a rigged model as it has no skeleton!",
                  "Creating Tessaly 3D Studio CZP File", "Recreated Normal Vectors", "Writing Mesh Header",
                  "Writing CMF Mesh: Body", "Writing Mesh: 0% done", "Writing Mesh: 5% done",
                  "Writing Mesh: 10% done", "Successfully created CZP File"));
  EXPECT_EQ(host.FileNames(), "model.czp model.fbx model.xfg");
  EXPECT_EQ(host.job.vertexTotal, 3);
  EXPECT_EQ(host.job.polygonTotal, 1);
}

TEST(Conversion, TakesModelsOfAnyEndingButTellsNoVersionsOfThem) {
  for (const char* name : {"model.obj", "modelfbx"}) {
    TestHost host;
    ASSERT_EQ(host.Convert(OneTriangle(), name), ConversionResult::Success) << name;
    EXPECT_EQ(host.Told("Loading Model"), 1u) << name;
    EXPECT_EQ(host.LinesThatBegin("FBX version").size(), 0u) << name;
    EXPECT_EQ(host.LinesThatBegin(">>>").size(), 0u) << name << " is not asked for bones and poses";
  }
}

TEST(Conversion, OfNoFileDoesNothing) {
  TestHost host;
  host.folder.Write("plain", "file");
  for (const char* name : {"none.fbx", "missing\\model.fbx", "plain\\model.fbx"}) {
    EXPECT_EQ(host.ConvertFile(name), ConversionResult::NoFile) << name;
    EXPECT_THAT(host.lines, ElementsAre()) << name;
  }
  EXPECT_EQ(ts3d::RunConversion(host.job, {"", {}}), ConversionResult::NoFile);
  EXPECT_EQ(host.FileNames(), "plain");
}

TEST(Conversion, OfWhatCannotBeLoadedLeavesNothingBehind) {
  TestHost host;
  std::filesystem::create_directory(host.folder.Path("folder.fbx"));
  testing::internal::CaptureStdout();
  EXPECT_EQ(host.ConvertFile("folder.fbx"), ConversionResult::LoadFailed);
  EXPECT_EQ(host.Convert(""), ConversionResult::LoadFailed);
  EXPECT_EQ(host.Convert("no model"), ConversionResult::LoadFailed);
  EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("the file is of no format that is read"));
  EXPECT_THAT(host.lines, ElementsAre("Initializing FBX Engine", "Loading FBX Model"));
  EXPECT_EQ(host.Convert(OneTriangle()), ConversionResult::Success) << "after a failure";
}

TEST(Conversion, WithoutAPlaceForAFileEndsThere) {
  struct {
    const char *blocked, *left;
    ConversionResult result;
  } const cases[] = {{"model.czp", "Body.cmf Body.xrf model.czp model.fbx model.xfg skeleton.csf",
                      ConversionResult::PackageFailed},
                     {"model.xfg", "Body.cmf model.czp model.fbx model.xfg", ConversionResult::PackageFailed},
                     {"skeleton.csf", "model.fbx skeleton.csf", ConversionResult::SkeletonFailed}};
  for (const auto& [blocked, left, result] : cases) {
    TestHost host;
    std::filesystem::create_directories(host.folder.Path(blocked) + "/x");
    EXPECT_EQ(host.Convert(OneTriangle()), result) << blocked;
    EXPECT_EQ(host.FileNames(), left);
    EXPECT_EQ(host.LinesThatBegin("Successfully").size(), 0u);
    EXPECT_EQ(host.job.vertexTotal, 0);
  }
}

TEST(Conversion, WritesTheDocumentToItsOwnPathAndAddsWhatTheModelsFolderHolds) {
  TestHost host;
  std::filesystem::create_directories(host.folder.Path("dir/sub"));
  struct {
    std::string path, file;
    ConversionResult result;
  } const cases[] = {{"model.fbx", "model", ConversionResult::PackageFailed},
                     {host.folder.Path("slashes.fbx"), "slashes", ConversionResult::PackageFailed},
                     {"dir\\sub/model.fbx", "dir/sub/model", ConversionResult::Success}};
  for (const auto& [path, file, result] : cases) {
    host.folder.Write(file + ".fbx", OneTriangle());
    EXPECT_EQ(ts3d::RunConversion(host.job, {path, {}}), result) << path;
    EXPECT_TRUE(host.Has(file + ".xfg")) << path;
  }
  EXPECT_EQ(host.Told(">>> Error in opening model.xfg for reading"), 1u);
  EXPECT_THAT(support::Package(host.folder.Path("dir/sub/model.czp"))["sub/model.xfg"],
              HasSubstr("<object_id>sub/model</object_id>"));
}

TEST(Conversion, NeverWritesOverTheModel) {
  for (const char* name : {"model.czp", "model.xfg", "skeleton.csf", "Body.cmf", "Body.xrf"}) {
    TestHost host;
    const ConversionResult result = host.Convert(OneTriangle(), name);
    EXPECT_EQ(support::ReadWholeFile(host.folder.Path(name)), OneTriangle()) << name;
    if (name[0] != 'B') {
      EXPECT_NE(result, ConversionResult::Success) << name;
    }
  }
}

/// The sample character with its textures, which are ".tga" files already, converted in `host`.
ConversionResult ConvertSample(TestHost& host, const std::string& name = "scout.fbx") {
  const std::string samples = TS3D_SAMPLES_FOLDER;
  for (const char* texture : {"cloth.tga", "metal.tga", "skin.tga"}) host.folder.Write(texture, texture);
  return host.Convert(support::ReadWholeFile(samples + "/scout.fbx"), name);
}

TEST(Sample, BecomesAWholePackage) {
  TestHost host;
  ASSERT_EQ(ConvertSample(host), ConversionResult::Success);
  const support::Package package = host.ReadPackage("scout.fbx");
  EXPECT_EQ(
      package.Names(),
      "cloth.tga skin.tga metal.tga skeleton.csf scout.xfg body_a.cmf body.cmf head.cmf hat_a.cmf hat.cmf "
      "backpack_a.cmf backpack.cmf body_a.xrf body.xrf head.xrf hat_a.xrf hat.xrf backpack_a.xrf "
      "backpack.xrf");
  const auto bones = support::ReadCsf(package["skeleton.csf"]);
  EXPECT_EQ(bones.size(), 29u);
  EXPECT_EQ(bones[0].name, "Mobo");
  size_t unweighted = 0;
  for (int32_t i = 0; i < 29; ++i) unweighted += !host.job.skeleton->bones.FindById(i)->weighted;
  EXPECT_EQ(unweighted, 2u) << "the two control bones";
  EXPECT_EQ(host.LinesThatBegin(">>>").size(), 0u);
}

TEST(Sample, GivesTheSamePackageHoweverManyConversionsTheJobHasDone) {
  TestHost fresh, used;
  ASSERT_EQ(ConvertSample(fresh, "Actor (Female).fbx"), ConversionResult::Success);
  ASSERT_EQ(ConvertSample(used), ConversionResult::Success);
  ASSERT_EQ(ApplyFinalSettings(used.job, {used.ModelPath("scout.fbx"), 150, "body=Skin"}),
            ts3d::ConversionResult::Success);
  ASSERT_EQ(ConvertSample(used, "Actor (Female).fbx"), ConversionResult::Success);
  EXPECT_TRUE(fresh.ReadPackage("Actor (Female).fbx").Members() ==
              used.ReadPackage("Actor (Female).fbx").Members());
  EXPECT_EQ(fresh.lines, used.lines);
}

TEST(DamagedSample, DoesNoHarm) {
  const std::string sample = support::ReadWholeFile(TS3D_SAMPLES_FOLDER "/scout.fbx");
  std::vector<std::string> models;
  constexpr size_t kPlaces = 14;
  for (size_t i = 0; i < kPlaces; ++i) {
    models.push_back(sample.substr(0, sample.size() * i / kPlaces + i % 7));
    // Runs that break numbers, counts, names and braces alike.
    const char* const junk[] = {"-9", "}", "\"", "{{", "*99999999", "1e308", "\xff\xfe", ";"};
    models.push_back(sample);
    models.back().replace(sample.size() * i / kPlaces + i * i % 97, 9, junk[i % std::size(junk)]);
  }
  for (const char* record :
       {"C: \"OO\"", "Geometry: ", "NodeAttribute: ", "Deformer: ", "Vertices: ", "PolygonVertexIndex: ",
        "UVIndex: ", "UV: ", "Indexes: ", "Weights: ", "TransformLink: ", "Materials: "}) {
    std::string& model = models.emplace_back(sample);
    for (size_t at = 0; (at = model.find(record, at)) != std::string::npos; ++at) model[at] = 'X';
    ASSERT_NE(model, sample) << record;
  }
  for (size_t i = 0; i < models.size(); ++i) {
    SCOPED_TRACE(i);
    TestHost host;
    testing::internal::CaptureStdout();
    // Success has to mean a sound package, which the host checks.
    const auto result = static_cast<int>(host.Convert(models[i]));
    testing::internal::GetCapturedStdout();
    EXPECT_TRUE(result == 0 || result == 2 || result == 5) << "result " << result;
    EXPECT_EQ(support::ReadWholeFile(host.folder.Path("model.fbx")), models[i]);
  }
}

}  // namespace
