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
  bool Detects(std::string_view head) const override { return head.starts_with("LOCKED"); }
  std::unique_ptr<scene::KFbxOpenFile> Open(std::string_view, const scene::KFbxProgress&,
                                            scene::KFbxFileVersion& version,
                                            scene::KFbxImportStatus&) const override {
    version = {6, 1, 0};
    return std::make_unique<LockedFile>();
  }
};

/// Loads files with `typed` waiting on standard input.
class Loader {
 public:
  explicit Loader(bool forgetsPassword = true) {
    if (forgetsPassword) {
      scene::KFbxIOSettings::Global().SetStringProp(scene::kPasswordSetting, "");
      scene::KFbxIOSettings::Global().SetBoolProp(scene::kPasswordEnableSetting, false);
    }
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
    const bool loaded = LoadScene(*manager_, *scene_, path, {}, versions);
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

TEST(Password, IsAskedForOnceAndEndsAtItsFirstBlank) {
  for (const char* typed : {"sesame\n", "  sesame street\n"}) {
    EXPECT_EQ(Loader().Load("LOCKED", typed, true), "Please enter password:");
  }
}

TEST(Password, ThatIsWrongIsNotAskedForAgain) {
  const std::string refused = "Please enter password:\nPassword is wrong, import aborted.\n";
  for (const char* typed : {"mellon\nsesame\n", ""}) {
    EXPECT_EQ(Loader().Load("LOCKED", typed, false), refused) << typed;
  }
  const std::string locked = support::WriteBinary({{"FBXHeaderExtension", {}, {{"EncryptionType", {1}}}}});
  EXPECT_EQ(Loader().Load(locked, std::string(5000, 'x'), false), refused);
}

TEST(Password, StaysInForceForLaterLoads) {
  Loader().Load("LOCKED", "sesame\n", true);
  EXPECT_EQ(Loader(false).Load("LOCKED", "", true), "");
}

TEST(Loading, TellsBothVersionsOfAFileOfAnUnknownOne) {
  Loader loader;
  const std::string told = loader.Load(support::WriteBinary({}, {.version = 1500}), "", false);
  EXPECT_TRUE(told.starts_with("Call to KFbxImporter::Initialize() failed.\nError returned: ")) << told;
  EXPECT_TRUE(
      told.ends_with("\n\nFBX version number for this FBX SDK is 7.7.0\nFBX version number for file " +
                     loader.path + " is 1.5.0\n\n"))
      << told;
}

}  // namespace
