// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>

#include "package/actor_package.h"
#include "support/character.h"
#include "support/test_host.h"

namespace {

using support::Character;
using support::TestHost;
using testing::ElementsAre;
using ts3d::AfterAdding;
using ts3d::PackageMode;

/// A host with an open package "model.czp", and the names added to it.
struct Archive : TestHost {
  explicit Archive(PackageMode mode = PackageMode::Create) {
    job.modelDirectory = ModelPath("");
    if (mode == PackageMode::Create) {
      EXPECT_TRUE(Open(mode));
    }
  }
  bool Open(PackageMode mode) { return OpenActorPackage(job, ModelPath("model.czp"), mode); }
  int32_t Add(const std::string& name, AfterAdding after = AfterAdding::KeepFile) {
    return AddFileToPackage(job, names, name, after);
  }
  support::Package Close() {
    EXPECT_TRUE(CloseActorPackage(job));
    return ReadPackage();
  }

  ts3d::PackagedNameSet names;
};

TEST(Archive, HoldsFilesOfAnySizeUnderTheirNames) {
  for (const size_t size : {0u, 1u, 16383u, 16384u, 16385u, 50000u}) {
    Archive archive;
    std::string bytes;
    for (size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * 31 ^ i >> 8);
    archive.folder.Write("a b\xe9.tga", bytes);
    EXPECT_EQ(archive.Add("a b\xe9.tga"), 0);
    EXPECT_EQ(archive.Close()["a b\xe9.tga"], bytes) << size;
    EXPECT_THAT(archive.lines, ElementsAre());
  }
}

TEST(Archive, HoldsTheDateOfEachFile) {
  setenv("TZ", "UTC0", 1);
  tzset();
  Archive archive;
  const std::filesystem::path path = archive.folder.Write("a", "a");
  const auto now = std::filesystem::file_time_type::clock::now();
  const auto sinceThen = std::chrono::system_clock::now() - std::chrono::system_clock::from_time_t(981173106);
  std::filesystem::last_write_time(path, now - std::chrono::duration_cast<std::chrono::seconds>(sinceThen));
  archive.Add("a");
  // 2001-02-03 in the high half; the time 04:05 in the upper bits of the low.
  const uint32_t date = archive.Close().Members()[0].dosDate;
  EXPECT_EQ(date >> 16, 21u << 9 | 2u << 5 | 3u);
  EXPECT_EQ((date & 0xffff) >> 5, 4u << 6 | 5u);
  unsetenv("TZ");
  tzset();
}

TEST(Archive, TakesEachNameOnce) {
  Archive archive;
  archive.folder.Write("a.tga", "1");
  archive.folder.Write("A.tga", "2");
  EXPECT_EQ(archive.Add("a.tga"), 0);
  EXPECT_EQ(archive.Add("A.tga"), 0);
  EXPECT_EQ(archive.Add("a.tga"), 0);
  EXPECT_EQ(archive.Close().Names(), "a.tga A.tga");
}

TEST(Archive, GetsAnEmptyMemberForAMissingFileAndGoesOn) {
  Archive archive;
  archive.folder.Write("b.cmf", "b");
  EXPECT_EQ(archive.Add("a.cmf", AfterAdding::DeleteFile), -1);
  EXPECT_EQ(archive.Add("b.cmf"), 0);
  EXPECT_EQ(archive.Add("a.cmf"), 0) << "a name that failed is not tried again";
  const auto package = archive.Close();
  EXPECT_EQ(package.Names(), "a.cmf b.cmf");
  EXPECT_EQ(package["a.cmf"], "");
  EXPECT_EQ(package["b.cmf"], "b");
  EXPECT_THAT(archive.lines, ElementsAre(">>> Error in opening a.cmf for reading"));
}

TEST(Archive, TellsOfFoldersInPlaceOfFiles) {
  Archive archive;
  std::filesystem::create_directory(archive.folder.Path("a.cmf"));
  EXPECT_EQ(archive.Add("a.cmf", AfterAdding::DeleteFile), -1);
  EXPECT_EQ(archive.Close().Names(), "a.cmf");
  EXPECT_THAT(archive.lines, ElementsAre(">>> Error in reading a.cmf"));
  EXPECT_TRUE(archive.Has("a.cmf"));
}

TEST(Archive, DeletesWhatHasTheNameInTheCurrentFolderNotWhatItPacked) {
  Archive archive;
  std::filesystem::create_directory(archive.folder.Path("models"));
  archive.folder.Write("models/a.cmf", "packed");
  archive.folder.Write("a.cmf", "bystander");
  archive.folder.Write("b.cmf", "bystander");
  archive.folder.Write("models/b.cmf", "kept");
  archive.job.modelDirectory = archive.ModelPath("models\\");
  archive.Add("a.cmf", AfterAdding::DeleteFile);
  archive.Add("b.cmf", AfterAdding::KeepFile);
  EXPECT_EQ(archive.Close()["a.cmf"], "packed");
  EXPECT_TRUE(archive.Has("models/a.cmf"));
  EXPECT_FALSE(archive.Has("a.cmf"));
  EXPECT_TRUE(archive.Has("b.cmf"));
}

TEST(Archive, NeverReadsOrDeletesOutsideItsFolder) {
  Archive archive;
  std::filesystem::create_directory(archive.folder.Path("models"));
  archive.folder.Write("secret", "secret");
  archive.job.modelDirectory = archive.ModelPath("models\\");
  for (const std::string& name : {std::string("../secret"), std::string("..\\secret"),
                                  archive.folder.Path("secret"), std::string(".."), std::string()}) {
    EXPECT_NE(archive.Add(name, AfterAdding::DeleteFile), 0) << name;
  }
  const auto package = archive.Close();
  for (const support::Member& member : package.Members()) EXPECT_EQ(member.bytes, "") << member.name;
  EXPECT_TRUE(archive.Has("secret"));
}

TEST(Archive, NeverHoldsTheModelOrItself) {
  Archive archive;
  archive.job.inputPath = archive.folder.Write("model.fbx", "model");
  EXPECT_EQ(archive.Add("model.fbx", AfterAdding::DeleteFile), -1);
  EXPECT_EQ(archive.Add("model.czp", AfterAdding::DeleteFile), -1);
  EXPECT_EQ(archive.Close()["model.fbx"], "");
  EXPECT_TRUE(archive.Has("model.fbx"));
}

TEST(Archive, CanBeExtendedByANameThatItHolds) {
  Archive archive;
  archive.folder.Write("a.xfg", "old");
  archive.Add("a.xfg");
  archive.Close();
  archive.names.clear();
  archive.folder.Write("a.xfg", "new");
  ASSERT_TRUE(archive.Open(PackageMode::Append));
  EXPECT_EQ(archive.Add("a.xfg", AfterAdding::DeleteFile), 0);
  const auto package = archive.Close();
  EXPECT_EQ(package.Names(), "a.xfg a.xfg");
  EXPECT_EQ(package.Members()[0].bytes, "old");
  EXPECT_EQ(package["a.xfg"], "new");
  EXPECT_FALSE(archive.Has("a.xfg"));
}

TEST(Archive, CannotBeExtendedUnlessItExists) {
  Archive archive(PackageMode::Append);
  EXPECT_FALSE(archive.Open(PackageMode::Append));
  archive.folder.Write("model.czp", "no archive");
  EXPECT_FALSE(archive.Open(PackageMode::Append));
}

TEST(PackageOfAModel, HoldsTexturesSkeletonDocumentMeshesAndMaterialsInThisOrder) {
  Character model;
  for (const char* name : {"Body", "Hat"}) {
    const auto mesh = model.Mesh(name, {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, -3, 0, 2, -2});
    Character::Coordinates(mesh, {0, 0}, {0, 0, 0, 0, 0, 0});
    Character::MaterialNumbers(mesh, {0, 1});
    model.Texture(model.Material(mesh), std::string(name) + ".tga");
    model.Material(mesh);
  }
  TestHost host;
  host.folder.Write("Body.tga", "1");
  host.folder.Write("Hat.tga", "2");
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(
      host.ReadPackage().Names(),
      "Body.tga Hat.tga skeleton.csf model.xfg Body_a.cmf Body.cmf Hat_a.cmf Hat.cmf Body_a.xrf Body.xrf "
      "Hat_a.xrf Hat.xrf");
  EXPECT_EQ(host.FileNames(), "Body.tga Hat.tga model.czp model.fbx model.xfg");
}

TEST(PackageOfAModel, HoldsOnlyTheLastOfTwoMeshesOfOneNameOnce) {
  Character model;
  model.Triangle("Body");
  model.Mesh("Body", {0, 0, 0, 1, 0, 0, 0, 1, 0, 5, 5, 5}, {0, 1, -3});
  TestHost host;
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(host.ReadPackage().Names(), "skeleton.csf model.xfg Body.cmf Body.xrf");
  EXPECT_EQ(host.Mesh("Body").vertices.size(), 4u);
}

TEST(PackageOfAModel, LeavesItsWorkFilesWhenTheCurrentFolderIsAnother) {
  Character model;
  model.Triangle("Body");
  TestHost host;
  std::filesystem::create_directory(host.folder.Path("models"));
  host.folder.Write("models/model.fbx", model.Text());
  host.folder.Write("Body.cmf", "bystander");
  ASSERT_EQ(ts3d::RunConversion(host.job, {host.ModelPath("models\\model.fbx"), {}}),
            ts3d::ConversionResult::Success);
  for (const char* name : {"Body.cmf", "Body.xrf", "skeleton.csf", "model.czp", "model.xfg"}) {
    EXPECT_TRUE(host.Has("models/" + std::string(name))) << name;
  }
  EXPECT_FALSE(host.Has("Body.cmf"));
}

}  // namespace
