// SPDX-License-Identifier: MIT
#include "mesh/claims/weigh_claims.h"
#include "scene/importer.h"

#include <gmock/gmock.h>

#include <new>

#include "support/load_scene.h"
#include "support/temp_folder.h"

namespace {

using support::FbxFile;
using support::FbxRecord;
using support::FbxRecords;
using support::ManagerPtr;
using support::TempFolder;
using support::WriteBinary;
using testing::HasSubstr;

/// Result of one import: error number and text, as far as it got.
struct LoadOutcome {
  bool opened = false;
  bool imported = false;
  int error = 0;
  std::string text;
  std::string version;
  std::string children;
};

LoadOutcome ImportPath(const std::string& path) {
  const ManagerPtr manager(scene::KFbxSdkManager::Create());
  scene::KFbxImporter& importer = *manager->CreateImporter(ts3d::WeighClaims);
  scene::KFbxScene& scene = *manager->CreateScene("scene");
  LoadOutcome outcome;
  outcome.opened = importer.Initialize(path);
  // The second time leaves nothing of the first.
  outcome.imported = importer.Import(scene) && importer.Import(scene);
  outcome.error = importer.GetLastErrorID();
  outcome.text = importer.GetLastErrorString();
  const scene::KFbxFileVersion v = importer.GetFileVersion();
  outcome.version =
      std::to_string(v.major) + "." + std::to_string(v.minor) + "." + std::to_string(v.revision);
  outcome.children = support::ChildNames(*scene.GetRootNode());
  return outcome;
}

LoadOutcome ImportBytes(std::string_view bytes, std::string_view name = "model.fbx") {
  const TempFolder folder;
  return ImportPath(folder.Write(name, bytes));
}

FbxRecords OneNode() {
  FbxFile file;
  file.Model(1, "node");
  file.Connect(1, 0);
  return file.Records();
}

TEST(Importer, BothContainersAreReadWhateverTheExtensionSays) {
  for (const std::string& bytes : {WriteBinary(OneNode()), support::WriteAscii(OneNode())}) {
    const LoadOutcome outcome = ImportBytes(bytes, "model.txt");
    EXPECT_TRUE(outcome.imported) << outcome.text;
    EXPECT_EQ(outcome.children, "node");
    EXPECT_EQ(outcome.version, "7.4.0");
    EXPECT_EQ(outcome.error, 0);
  }
}

TEST(Importer, OnlyKnownVersionsAreRead) {
  const struct {
    uint32_t version;
    int error;
    const char* text;
  } kCases[] = {{7000, 0, ""},
                {8990, 0, ""},
                {0, 1, "the file's FBX version cannot be read"},
                {0xffffffff, 1, "the file's FBX version cannot be read"},
                {9000, 1, "FBX version 9.0.0 is not known"},
                {2000, 0, ""},
                {1999, 2, "FBX version 1.9.9 is too old; save the model as FBX 6.1 or later"},
                {1, 2, "FBX version 0.0.0 is too old; save the model as FBX 6.1 or later"}};
  for (const auto& c : kCases) {
    const LoadOutcome outcome = ImportBytes(WriteBinary(OneNode(), {.version = c.version}));
    EXPECT_EQ(outcome.opened, c.error == 0) << c.version;
    EXPECT_EQ(outcome.error, c.error) << c.version;
    EXPECT_EQ(outcome.text, c.text);
  }
}

TEST(Importer, TheVersionIsToldAlsoOfOldAndRefusedFiles) {
  const auto versionOf = [](uint32_t header, int record) {
    const FbxRecord extension("FBXHeaderExtension", {}, {{"FBXVersion", {record}}});
    return ImportBytes(WriteBinary({extension}, {.version = header})).version;
  };
  EXPECT_EQ(versionOf(3000, 5800), "5.8.0");
  EXPECT_EQ(versionOf(2000, 4050), "4.0.5");
  EXPECT_EQ(versionOf(3000, 7400), "3.0.0") << "a version that says so at its start";
  EXPECT_EQ(versionOf(6100, 5800), "6.1.0");
  EXPECT_EQ(versionOf(1500, 1500), "1.5.0");
  EXPECT_EQ(ImportBytes("; FBX 9.1.0 project file\n").version, "9.1.0");
}

TEST(Importer, AProtectedFileOpensButIsNotImported) {
  FbxRecords records = OneNode();
  FbxRecord& encryption = records.emplace_back("FBXHeaderExtension").Add({"EncryptionType", {1}});
  const LoadOutcome outcome = ImportBytes(WriteBinary(records));
  EXPECT_TRUE(outcome.opened);
  EXPECT_FALSE(outcome.imported);
  EXPECT_EQ(outcome.error, 9);
  EXPECT_EQ(outcome.text, "the file is protected by a password");
  EXPECT_EQ(outcome.children, "");
  encryption.values = {0};
  EXPECT_TRUE(ImportBytes(WriteBinary(records)).imported);
}

TEST(Importer, WhatIsNoSoundFileIsRefusedWithTheReason) {
  const TempFolder folder;
  const auto expect = [](const LoadOutcome& outcome, int error, const char* text) {
    EXPECT_EQ(outcome.error, error);
    EXPECT_THAT(outcome.text, HasSubstr(text));
  };
  expect(ImportPath(folder.Path("missing.fbx")), 3, "the file cannot be opened: No such file or directory");
  expect(ImportPath(folder.Path()), 3, "the file cannot be opened: it is a folder");
  expect(ImportPath("/dev/null"), 3, "the file cannot be opened: it is not a regular file");
  expect(ImportPath(""), 3, "");
  expect(ImportBytes(""), 4, "the file is empty");
  expect(ImportBytes("solid cube\n"), 4, "the file is of no format that is read");
  expect(ImportBytes(support::Patched(WriteBinary(OneNode()), 27, 10)), 5,
         "record \"Definitions\": its end lies outside (at byte 51)");
  expect(ImportBytes("; FBX 7.4.0 project file\nA: {\n"), 5, "");
}

/// A reader that takes every file and has no memory for any.
class HungryReader : public scene::KFbxReader {
 public:
  bool Detects(std::string_view) const override { return true; }
  std::unique_ptr<scene::KFbxOpenFile> Open(std::string_view, const scene::KFbxProgress&,
                                            scene::KFbxFileVersion&,
                                            scene::KFbxImportStatus&) const override {
    throw std::bad_alloc();
  }
};

TEST(ReaderRegistry, TheLastRegisteredReaderIsAskedFirst) {
  const TempFolder folder;
  const std::string path = folder.Write("model.fbx", WriteBinary(OneNode()));
  const ManagerPtr manager(scene::KFbxSdkManager::Create());
  scene::KFbxImporter& importer = *manager->CreateImporter(ts3d::WeighClaims);
  ASSERT_FALSE(importer.Initialize(folder.Path("missing.fbx")));
  EXPECT_TRUE(importer.Initialize(path));
  EXPECT_EQ(importer.GetLastErrorID(), 0);
  manager->GetReaderRegistry().Register(std::make_unique<HungryReader>());
  EXPECT_FALSE(importer.Initialize(path));
  EXPECT_EQ(importer.GetLastErrorID(), 6);
  EXPECT_STREQ(importer.GetLastErrorString(), "there is not enough memory to read the file");
}

}  // namespace
