// SPDX-License-Identifier: MIT
//
// Disks that are full or read-only, folders that vanish and names as long as they may be, for real.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "faults/strip_runs.h"

namespace {

namespace fs = std::filesystem;
using faults::ReadWholeFile;

/// A small disk under the model's folder, seen by this process only.
class RealDisk : public faults::StripRuns {
 protected:
  void SetUp() override {
    StripRuns::SetUp();
    const int scope = geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER;
    if (unshare(scope) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("none", folder_.Path().c_str(), "tmpfs", 0, "size=4m") != 0) {
      GTEST_SKIP() << "no disk can be mounted here: " << std::strerror(errno);
    }
    isMounted_ = true;
    folder_.Write("strip.fbx", ReadWholeFile(TS3D_FIXTURES_FOLDER "/strip_7500_binary.fbx"));
    folder_.Write("cloth.tga", "picture");
    ASSERT_EQ(Convert(), 0);
    TakeAsReference();
  }
  void TearDown() override {
    StripRuns::TearDown();
    if (isMounted_) umount2(folder_.Path().c_str(), MNT_DETACH);
  }

  bool isMounted_ = false;
};

TEST_F(RealDisk, FullDisksGiveWholePackagesOrNoneAndFinalSettingsLoseNothing) {
  int failures = 0;
  constexpr size_t kPage = 4096;
  for (size_t filled = 0; filled < 1024 * kPage; filled += filled < 990 * kPage ? 90 * kPage : kPage) {
    for (const char* name : {"strip.czp", "strip.xfg", "strip.cmf", "strip_a.cmf", "strip.xrf", "strip_a.xrf",
                             "skeleton.csf", "filling"}) {
      fs::remove(Path(name));
    }
    {
      std::ofstream filling(Path("filling"), std::ios::binary);
      filling << std::string(filled, 'x');
      if (!filling.flush()) break;
    }
    const int code = Convert();
    failures += code != 0 ? 1 : 0;
    SCOPED_TRACE(std::to_string(filled) + " bytes taken: result " + std::to_string(code) + "\n" +
                 lines_.text.data());
    ExpectWholePackageOrNone(code);
    if (code != 0) continue;
    const int finished = Finish();
    EXPECT_TRUE(finished == 0 || finished == 7 || finished == 8) << finished;
    EXPECT_EQ(folder_.Names().find(".unfinished"), std::string::npos);
    EXPECT_TRUE(finished != 7 || ReadWholeFile(Path("strip.xfg")) == document_);
    EXPECT_EQ(faults::Package(Path("strip.czp")).Count("strip.xfg"), finished == 0 ? 2u : 1u);
  }
  EXPECT_GE(failures, 1) << "the disk was never full";
}

TEST_F(RealDisk, AReadOnlyFolderKeepsWhatItHolds) {
  ASSERT_EQ(mount("none", folder_.Path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
  EXPECT_EQ(Convert(), 4);
  EXPECT_EQ(Finish(), 6);
  EXPECT_EQ(ReadWholeFile(Path("strip.czp")), package_);
  EXPECT_EQ(ReadWholeFile(Path("strip.xfg")), document_);
}

using Folders = faults::StripRuns;

TEST_F(Folders, OneThatVanishesIsNoSuccess) {
  for (const char* line : {"Loading FBX Model", "Generating Skeleton", "Writing Mesh Header"}) {
    fs::create_directory(Path("models"));
    fs::copy_file(TS3D_FIXTURES_FOLDER "/strip_7500_binary.fbx", Path("models/strip.fbx"));
    struct Host {
      const char* line;
      std::string folder;
    } host{line, Path("models")};
    const auto vanish = [](void* context, const char* told) {
      const Host& self = *static_cast<Host*>(context);
      if (std::string_view(told) == self.line) fs::remove_all(self.folder);
    };
    const int code = ConvertFBXFile((folder_.Path() + "\\models\\strip.fbx").c_str(), 0, 0, 0, 0, nullptr,
                                    nullptr, nullptr, &host, vanish, nullptr);
    EXPECT_TRUE(code >= 2 && code <= 4) << line << " gave " << code;
    EXPECT_FALSE(fs::exists(Path("models")));
  }
}

TEST_F(Folders, NamesAsLongAsTheyMayBeAreConvertedAndFinished) {
  const std::string stem(251, 'n');
  fs::rename(Path("strip.fbx"), Path(stem + ".fbx"));
  const std::string model = folder_.Path() + "\\" + stem + ".fbx";
  EXPECT_EQ(ConvertFBXFile(model.c_str(), 0, 0, 0, 0, nullptr, nullptr, nullptr, &lines_, faults::Lines::Take,
                           nullptr),
            0);
  EXPECT_EQ(ConvertFBXFileFinish(model.c_str(), 150, 0, 0, nullptr, nullptr, &lines_, faults::Lines::Take),
            0);
  const faults::Package package(Path(stem + ".czp"));
  EXPECT_EQ(package.Count(stem + ".xfg"), 2u);
  EXPECT_EQ(package.Members().size(), converted_.size() + 1);
}

}  // namespace
