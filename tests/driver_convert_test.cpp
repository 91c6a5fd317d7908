// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/actor_type.h"
#include "skeleton/skeleton_state.h"
#include "support/character.h"
#include "support/test_host.h"

namespace {

using support::Character;
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

TEST(ActorTypes, ComeFromThePathInAnyLetterCase) {
  const std::pair<const char*, ActorType> cases[] = {{"C:\\models\\Actor (Female).FBX", ActorType::Female},
                                                     {"C:\\models\\actor (male).fbx", ActorType::Male},
                                                     {"m\\ACTOR (old male).fbx", ActorType::Male},
                                                     {"m\\actor (oldmale).fbx", ActorType::None},
                                                     {"m\\actor (a female).fbx", ActorType::Female},
                                                     {"m\\actor (shefemale).fbx", ActorType::Female},
                                                     {"m\\actor (boy).fbx", ActorType::Boy},
                                                     {"m\\actor (schoolboy).fbx", ActorType::Boy},
                                                     {"m\\actor (girl 2).fbx", ActorType::Girl},
                                                     {"m\\actor (preteen).fbx", ActorType::Teenager},
                                                     {"m\\actor (a teenager).fbx", ActorType::Teenager},
                                                     {"m\\actor (baby).fbx", ActorType::Baby},
                                                     {"m\\Actor (Male Boy).fbx", ActorType::Boy},
                                                     {"m\\Actor (Male) (Boy).fbx", ActorType::Boy},
                                                     {"m\\actor (boy)\\actor (baby).fbx", ActorType::Baby},
                                                     {"actor (x)\\m (girl).fbx", ActorType::None},
                                                     {"actor (x)\\actor (girl).fbx", ActorType::Girl},
                                                     {"m\\actor (\\x (boy)\\y.fbx", ActorType::Boy},
                                                     {"m\\actor.fbx", ActorType::None},
                                                     {"m\\(boy).fbx", ActorType::None},
                                                     {"actor (boy).fbx", ActorType::None},
                                                     {"m\\actor(boy).fbx", ActorType::None},
                                                     {"", ActorType::None}};
  for (const auto& [path, type] : cases) EXPECT_EQ(ts3d::DetectActorType(path), type) << path;
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
  for (const char* name : {"model.obj", "modelfbx", "model.fbx2"}) {
    TestHost host;
    ASSERT_EQ(host.Convert(OneTriangle(), name), ConversionResult::Success) << name;
    EXPECT_EQ(host.Told("Loading Model"), 1u) << name;
    EXPECT_EQ(host.LinesThatBegin("FBX version").size(), 0u) << name;
  }
  TestHost host;
  host.Convert(OneTriangle(), "model.FbX");
  EXPECT_EQ(host.Told("Loading FBX Model"), 1u);
  EXPECT_TRUE(host.Has("model.czp"));
}

TEST(Conversion, NeedsNoCallbacks) {
  TestHost host;
  host.job.statusCallback = nullptr;
  host.job.textureCallback = nullptr;
  EXPECT_EQ(host.Convert(OneTriangle()), ConversionResult::Success);
  EXPECT_EQ(host.Convert(Character().Text()), ConversionResult::NoMesh);
  EXPECT_THAT(host.lines, ElementsAre());
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
  EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("the file is not an FBX file"));
  EXPECT_THAT(host.lines, ElementsAre("Initializing FBX Engine", "Loading FBX Model"));
  EXPECT_EQ(host.FileNames(), "folder.fbx model.fbx");
  EXPECT_EQ(host.Convert(OneTriangle()), ConversionResult::Success) << "after a failure";
}

TEST(Conversion, WithoutAPlaceForThePackageStillWritesTheWorkFiles) {
  TestHost host;
  std::filesystem::create_directories(host.folder.Path("model.czp/x"));
  EXPECT_EQ(host.Convert(OneTriangle()), ConversionResult::PackageFailed);
  EXPECT_EQ(host.FileNames(), "Body.cmf Body.xrf model.czp model.fbx model.xfg skeleton.csf");
  EXPECT_EQ(host.job.vertexTotal, 0);
  EXPECT_EQ(host.job.polygonTotal, 0);
}

TEST(Conversion, WithoutAPlaceForTheDocumentPacksNoMeshes) {
  TestHost host;
  std::filesystem::create_directories(host.folder.Path("model.xfg/x"));
  EXPECT_EQ(host.Convert(OneTriangle()), ConversionResult::PackageFailed);
  EXPECT_EQ(host.ReadPackage().Names(), "skeleton.csf model.xfg Body.xrf");
  EXPECT_EQ(host.FileNames(), "Body.cmf model.czp model.fbx model.xfg");
  EXPECT_EQ(host.LinesThatBegin("Successfully").size(), 0u);
}

TEST(Conversion, WithoutAPlaceForTheSkeletonEndsThere) {
  TestHost host;
  std::filesystem::create_directories(host.folder.Path("skeleton.csf/x"));
  host.folder.Write("model.czp", "package of an earlier run");
  EXPECT_EQ(host.Convert(OneTriangle()), ConversionResult::SkeletonFailed);
  EXPECT_EQ(host.FileNames(), "model.czp model.fbx skeleton.csf");
  EXPECT_EQ(host.lines.back(), ">>> This is NOT a rigged model as it has no skeleton!");
}

TEST(Conversion, OfAModelWithoutMeshesLeavesAPackageWithout) {
  Character model;
  model.Bone("root");
  model.Mesh("Empty", {}, {});
  TestHost host;
  EXPECT_EQ(host.Convert(model.Text()), ConversionResult::NoMesh);
  EXPECT_EQ(host.ReadPackage().Names(), "skeleton.csf model.xfg");
  EXPECT_EQ(host.FileNames(), "model.czp model.fbx model.xfg");
  EXPECT_EQ(host.LinesThatBegin("Successfully").size(), 0u);
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

TEST(Conversion, ReplacesThePackageOfAnEarlierRun) {
  TestHost host;
  host.folder.Write("model.czp", "no archive");
  host.folder.Write("skeleton.csf", "no skeleton");
  EXPECT_EQ(host.Convert(OneTriangle()), ConversionResult::Success);
}

TEST(Conversion, MayReadTheActorTypeFromAnotherPath) {
  TestHost host;
  host.folder.Write("model.fbx", OneTriangle());
  EXPECT_EQ(ts3d::RunConversion(host.job, {host.ModelPath("model.fbx"), "m\\Actor (Girl).fbx"}),
            ConversionResult::Success);
  EXPECT_EQ(host.job.actorType, ActorType::Girl);
}

/// The sample character with its textures, converted in `host`.
ConversionResult ConvertSample(TestHost& host, const std::string& name = "scout.fbx") {
  const std::string samples = TS3D_SAMPLES_FOLDER;
  for (const char* texture : {"cloth.tga", "metal.tga", "skin.tga"}) {
    host.folder.Write(texture, support::ReadWholeFile(samples + "/" + texture));
  }
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
  EXPECT_EQ(host.FileNames(), "cloth.tga metal.tga scout.czp scout.fbx scout.xfg skin.tga");
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
  used.Convert(OneTriangle(), "actor (boy).fbx");
  ASSERT_EQ(ConvertSample(used), ConversionResult::Success);
  ASSERT_EQ(ConvertSample(used, "Actor (Female).fbx"), ConversionResult::Success);
  EXPECT_TRUE(fresh.ReadPackage("Actor (Female).fbx").Members() ==
              used.ReadPackage("Actor (Female).fbx").Members());
  EXPECT_EQ(fresh.lines, used.lines);
  EXPECT_EQ(fresh.job.vertexTotal, used.job.vertexTotal);
  EXPECT_EQ(fresh.job.polygonTotal, used.job.polygonTotal);
}

}  // namespace
