// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/file_writer.h"
#include "core/pack_level.h"
#include "package/actor_package.h"
#include "support/character.h"
#include "support/test_host.h"

namespace {

TEST(HeldFiles, BeyondTheMemoryTheyHaveShareATemporaryFile) {
  ts3d::HeldFiles files;
  const auto content = [](int i) {
    return std::string(20000, static_cast<char>('a' + i % 26)) + std::to_string(i);
  };
  for (int i = 0; i < 500; ++i) ASSERT_TRUE(files.Put(std::to_string(i), content(i)));
  ASSERT_TRUE(files.Put("7", "again"));
  EXPECT_TRUE(files.Erase("8"));
  EXPECT_FALSE(files.Contains("8"));
  EXPECT_EQ(files.Read("7"), "again");
  for (const int i : {0, 499, 300}) EXPECT_EQ(files.Read(std::to_string(i)), content(i)) << i;
}

TEST(HeldFiles, TakeWhatHasNoPlaceOfItsOwnInTheFolder) {
  const support::TempFolder folder;
  std::error_code unknown;
  ts3d::WorkFiles files;
  files.holdsSmallFiles = true;
  files.modelDirectory = folder.Path("");
  const std::string large(100'000, 'x');
  for (const char* name : {"Coat.cmf", "coat.cmf", "a/b.cmf"}) {
    ts3d::WorkFileWriter writer(files, name);
    writer.Bytes(large.data(), large.size());
    writer.Bytes(name, 1);
    EXPECT_EQ(writer.Finish(), name != std::string("a/b.cmf")) << name;
    // As where capitals do not count.
    std::filesystem::create_hard_link(folder.Path("Coat.cmf"), folder.Path("coat.cmf"), unknown);
  }
  EXPECT_FALSE(files.held.Contains("Coat.cmf"));
  EXPECT_EQ(support::ReadWholeFile(folder.Path("Coat.cmf")), large + "C");
  EXPECT_EQ(files.held.Read("coat.cmf"), large + "c");
}

using support::Character;
using support::TestHost;
using testing::ElementsAre;
using ts3d::AfterAdding;

using PackLevel = std::optional<int>;
const PackLevel kLevels[] = {std::nullopt, 0, ts3d::kFastPackLevel, ts3d::kDefaultPackLevel,
                             ts3d::kSmallestPackLevel};

/// A host with an open package "model.czp".
struct Archive : TestHost {
  explicit Archive(PackLevel level = {}) {
    job.settings.packLevel = level;
    job.files.modelDirectory = ModelPath("");
    EXPECT_TRUE(package.Open(ModelPath("model.czp"), ts3d::PackageMode::Create));
  }
  int32_t Add(const std::string& name, AfterAdding after = AfterAdding::KeepFile) {
    return package.AddFileToPackage(name, after);
  }
  support::Package Close() {
    EXPECT_TRUE(package.Close());
    return ReadPackage();
  }

  ts3d::ActorPackage package{job.files, job.settings, job.status};
};

TEST(Archive, HoldsFilesOfAnySizeUnderTheirNames) {
  for (const PackLevel level : kLevels) {
    for (const size_t size : {0u, 16384u, 50000u}) {
      Archive archive(level);
      std::string bytes;
      for (size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * 31 ^ i >> 8);
      archive.folder.Write("a b\xe9.tga", bytes);
      EXPECT_EQ(archive.Add("a b\xe9.tga"), 0);
      EXPECT_EQ(archive.Close()["a b\xe9.tga"], bytes) << size;
      EXPECT_THAT(archive.lines, ElementsAre());
    }
  }
}

TEST(Archive, GetsAnEmptyMemberForAMissingFileAndGoesOn) {
  for (const PackLevel level : kLevels) {
    Archive archive(level);
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
}

TEST(Archive, NeverTakesTheModelNorWhatIsOutsideItsFolder) {
  Archive archive;
  std::filesystem::create_directory(archive.folder.Path("models"));
  archive.folder.Write("secret", "secret");
  EXPECT_EQ(archive.Add("model.czp", AfterAdding::DeleteFile), -1) << "itself";
  archive.job.files.modelDirectory = archive.ModelPath("models\\");
  archive.job.files.inputPath = archive.folder.Write("models/model.fbx", "model");
  for (const std::string& name :
       {std::string("../secret"), std::string("..\\secret"), archive.folder.Path("secret"), std::string(".."),
        std::string(), std::string("model.fbx")}) {
    EXPECT_NE(archive.Add(name, AfterAdding::DeleteFile), 0) << name;
  }
  const auto package = archive.Close();
  for (const support::Member& member : package.Members()) EXPECT_EQ(member.bytes, "") << member.name;
  EXPECT_TRUE(archive.Has("secret") && archive.Has("models/model.fbx"));
}

TEST(PackageOfAModel, HoldsOnlyTheLastOfTwoMeshesOfOneNameOnce) {
  Character model;
  model.Triangle("Body");
  model.Mesh("Body", {0, 0, 0, 1, 0, 0, 0, 1, 0, 5, 5, 5}, {0, 1, -3});
  model.Triangle("body");
  TestHost host(model);
  EXPECT_EQ(host.ReadPackage().Names(), "skeleton.csf model.xfg Body.cmf body.cmf Body.xrf body.xrf");
  EXPECT_EQ(host.Mesh("Body").vertices.size(), 4u);
}

TEST(PackageOfAModel, KeepsNamesOfAnyLengthAndControlCharacters) {
  const std::string tab = "tab\there", large(3000, 'n'), huge(70'000, 'h');
  Character model;
  for (const std::string& name : {tab, large, large + "2", huge}) model.Triangle(name);
  TestHost host;
  host.folder.Write("model.fbx", model.Text());
  ASSERT_EQ(ts3d::RunConversion(host.job, {host.ModelPath("model.fbx"), {}}),
            ts3d::ConversionResult::Success);
  EXPECT_EQ(host.Mesh(tab).vertices.size(), 3u);
  const support::Package package = host.ReadPackage();
  EXPECT_EQ(package.Count(tab + ".xrf"), 1u);
  for (const std::string& name : {large + ".cmf", large + "2.xrf"}) EXPECT_EQ(package[name], "");
  EXPECT_EQ(host.Told(">>> Error in opening " + large + "2.cmf for reading"), 1u);
  EXPECT_EQ(host.Told(">>> Error in opening " + huge + ".cmf in zipfile"), 1u) << "no archive takes it";
  EXPECT_THAT(host.Document(), testing::HasSubstr("<mesh name=\"" + huge + "\" file"));
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

TEST(PackageOfAModel, HoldsTheSameAtAnyLevelAndWhenSmallFilesStayInMemory) {
  Character model;
  model.Triangle("Body");
  std::vector<double> points;
  std::vector<double> table;
  for (int i = 0; i < 1200; ++i) {  // a mesh file larger than the buffer that files are written through
    points.insert(points.end(), {i / 3 * 1.0, i % 3 == 1 ? 1.0 : 0.0, i % 3 == 2 ? 1.0 : 0.0});
    table.push_back(i % 3 == 2 ? ~i : i);
  }
  model.Mesh("Cape", points, table);
  const TestHost plain(model);
  const support::Package expected = plain.ReadPackage();
  for (const PackLevel level : kLevels) {
    TestHost holding;
    holding.job.settings.packLevel = level;
    holding.job.settings.holdsSmallFiles = true;
    holding.folder.Write("Body.xrf", "what an earlier run left");
    ASSERT_EQ(holding.Convert(model.Text()), ts3d::ConversionResult::Success);
    const support::Package package = holding.ReadPackage();
    EXPECT_EQ(package.Names(), expected.Names());
    for (const auto& member : expected.Members())
      EXPECT_EQ(package[member.name], member.bytes) << member.name;
    EXPECT_EQ(holding.FileNames(), plain.FileNames());
    EXPECT_EQ(holding.lines, plain.lines);
  }
}

}  // namespace
