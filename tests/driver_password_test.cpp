// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdio>

#include "driver/scene_loader.h"
#include "support/fbx_builder.h"
#include "support/temp_folder.h"

namespace {

using scene::EImportError;

/// A format whose files open with the word "sesame".
class LockedFile : public scene::KFbxOpenFile {
 public:
  scene::KFbxFileVersion GetVersion() const override { return {6, 1, 0}; }
  scene::KFbxImportStatus Read(scene::KFbxScene& scene, const scene::KFbxIOSettings& settings) override {
    if (!settings.GetBoolProp("Import|AdvOptGrp|FileFormat|Fbx|Password_Enable", false) ||
        settings.GetStringProp("Import|AdvOptGrp|FileFormat|Fbx|Password", "") != "sesame") {
      return {EImportError::ePASSWORD_ERROR, "locked"};
    }
    scene.GetRootNode()->AddChild(scene.Create<scene::KFbxNode>("treasure"));
    return {};
  }
};

class LockedReader : public scene::KFbxReader {
 public:
  std::string_view GetExtension() const override { return "lock"; }
  bool Detects(std::string_view head) const override { return head.starts_with("LOCKED"); }
  std::unique_ptr<scene::KFbxOpenFile> Open(std::string_view, scene::KFbxFileVersion& version,
                                            scene::KFbxImportStatus&) const override {
    version = {6, 1, 0};
    return std::make_unique<LockedFile>();
  }
};

/// Loads files with `typed` waiting on standard input.
class Loader {
 public:
  Loader() {
    scene::KFbxIOSettings::Global().SetStringProp(scene::kPasswordSetting, "");
    scene::KFbxIOSettings::Global().SetBoolProp(scene::kPasswordEnableSetting, false);
    ts3d::CreateSdkObjects(manager_, scene_);
    manager_->GetReaderRegistry().Register(std::make_unique<LockedReader>());
  }
  ~Loader() {
    ts3d::DestroySdkObjects(manager_);
    EXPECT_TRUE(std::freopen("/dev/null", "r", stdin));
  }

  /// @return what was printed
  std::string Load(std::string_view bytes, std::string_view typed, bool expectSuccess) {
    path = folder_.Write("file.fbx", bytes);
    EXPECT_TRUE(std::freopen(folder_.Write("typed", typed).c_str(), "r", stdin));
    testing::internal::CaptureStdout();
    const bool loaded = LoadScene(*manager_, *scene_, path, versions);
    EXPECT_EQ(loaded, expectSuccess);
    EXPECT_EQ(scene_->GetRootNode()->GetChildCount(), loaded ? 1 : 0);
    return testing::internal::GetCapturedStdout();
  }

  ts3d::LoadedVersions versions;
  std::string path;

 private:
  support::TempFolder folder_;
  scene::KFbxSdkManager* manager_ = nullptr;
  scene::KFbxScene* scene_ = nullptr;
};

TEST(Password, IsAskedForOnceAndOpensTheFile) {
  EXPECT_EQ(Loader().Load("LOCKED", "sesame\n", true), "Please enter password:");
}

TEST(Password, EndsAtItsFirstBlank) {
  EXPECT_EQ(Loader().Load("LOCKED", "  sesame street\n", true), "Please enter password:");
}

TEST(Password, ThatIsWrongIsNotAskedForAgain) {
  const std::string refused = "Please enter password:\nPassword is wrong, import aborted.\n";
  for (const char* typed : {"mellon\nsesame\n", "Sesame", "", "\n\n"}) {
    EXPECT_EQ(Loader().Load("LOCKED", typed, false), refused) << typed;
  }
  EXPECT_EQ(Loader().Load("LOCKED", std::string(5000, 'x'), false), refused);
}

TEST(Password, StaysInForceForLaterLoads) {
  Loader loader;
  loader.Load("LOCKED", "sesame\n", true);
  scene::KFbxSdkManager* manager = nullptr;
  scene::KFbxScene* scene = nullptr;
  ts3d::CreateSdkObjects(manager, scene);
  manager->GetReaderRegistry().Register(std::make_unique<LockedReader>());
  testing::internal::CaptureStdout();
  EXPECT_TRUE(LoadScene(*manager, *scene, loader.path, loader.versions));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  ts3d::DestroySdkObjects(manager);
}

TEST(Loading, OfAnOpenFileAsksNothing) {
  support::FbxFile file;
  file.Model(1, "node");
  file.Connect(1, 0);
  Loader loader;
  EXPECT_EQ(loader.Load(support::WriteBinary(file.Records(), {.version = 7300}), "sesame", true), "");
  EXPECT_EQ(loader.versions.file.major, 7);
  EXPECT_EQ(loader.versions.file.minor, 3);
  EXPECT_EQ(loader.versions.file.revision, 0);
}

TEST(Loading, OfAProtectedFbxFileAsksForAPassword) {
  const std::string file = support::WriteBinary({{"FBXHeaderExtension", {}, {{"EncryptionType", {1}}}}});
  EXPECT_EQ(Loader().Load(file, "anything", false),
            "Please enter password:\nPassword is wrong, import aborted.\n");
}

TEST(Loading, TellsBothVersionsOfAFileOfAnUnknownOne) {
  for (const auto& [version, text] : {std::pair(1500u, "1.5.0"), std::pair(9000u, "9.0.0")}) {
    Loader loader;
    const std::string told = loader.Load(support::WriteBinary({}, {.version = version}), "", false);
    EXPECT_TRUE(told.starts_with("Call to KFbxImporter::Initialize() failed.\nError returned: ")) << told;
    EXPECT_TRUE(
        told.ends_with("\n\nFBX version number for this FBX SDK is 7.7.0\nFBX version number for file " +
                       loader.path + " is " + text + "\n\n"))
        << told;
  }
}

TEST(Loading, TellsNoVersionsOfWhatIsNoFbxFile) {
  EXPECT_EQ(Loader().Load("no model", "", false),
            "Call to KFbxImporter::Initialize() failed.\nError returned: the file is not an FBX file\n\n");
}

}  // namespace
