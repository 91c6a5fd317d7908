// SPDX-License-Identifier: MIT
//
// Final settings that are interrupted: document and package are the old or the new ones, never a torso.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "driver/final_settings.h"
#include "support/test_host.h"

namespace {

using support::Package;
using support::ReadWholeFile;
using support::TestHost;

constexpr const char* kScout = TS3D_SAMPLES_FOLDER "/scout.fbx";

class FinishSafety : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(host_.Convert(ReadWholeFile(kScout), "scout.fbx"), ts3d::ConversionResult::Success);
    oldDocument_ = ReadWholeFile(Document());
    oldPackage_ = ReadWholeFile(PackagePath());
    // Where the converter cannot delete the document, so that every round starts alike.
    std::filesystem::create_directory(host_.folder.Path("elsewhere"));
    std::filesystem::current_path(host_.folder.Path("elsewhere"));
  }

  std::string Document() const { return host_.folder.Path("scout.xfg"); }
  std::string PackagePath() const { return host_.folder.Path("scout.czp"); }

  ts3d::ConversionResult Finish() {
    return ts3d::ApplyFinalSettings(host_.job, {host_.ModelPath("scout.fbx"), 150.0f, "body=Skin|hat=~Cap"});
  }

  void FinishAndKill(useconds_t microseconds) {
    const pid_t child = fork();
    if (child == 0) _exit(static_cast<int>(Finish()));
    usleep(microseconds);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
  }

  void Restore() {
    host_.folder.Write("scout.xfg", oldDocument_);
    host_.folder.Write("scout.czp", oldPackage_);
  }

  void ExpectOldOrNew(const std::string& newDocument) {
    const std::string document = ReadWholeFile(Document());
    EXPECT_TRUE(document == oldDocument_ || document == newDocument) << document.size() << " bytes";
    const Package package(PackagePath());
    const size_t count = package.Count("scout.xfg");
    EXPECT_TRUE((count == 1 && package["scout.xfg"] == oldDocument_) ||
                (count == 2 && package["scout.xfg"] == newDocument));
    CheckPackage(package);
  }

  std::string FinishedDocument() {
    EXPECT_EQ(Finish(), ts3d::ConversionResult::Success);
    std::string document = ReadWholeFile(Document());
    Restore();
    return document;
  }

  TestHost host_;
  std::string oldDocument_, oldPackage_;
};

TEST_F(FinishSafety, BeingKilledAtAnyMomentLosesNothing) {
  const std::string newDocument = FinishedDocument();
  for (useconds_t microseconds = 100; microseconds < 6000; microseconds += 200) {
    Restore();
    FinishAndKill(microseconds);
    ExpectOldOrNew(newDocument);
  }
}

TEST_F(FinishSafety, AMissingPackageLeavesTheNewDocumentAndNothingElse) {
  std::filesystem::remove(PackagePath());
  host_.lines.clear();
  EXPECT_EQ(Finish(), ts3d::ConversionResult::UpdateFailed);
  EXPECT_EQ(host_.Told(">>> Failed to Open CZP File"), 1u);
  EXPECT_EQ(host_.FileNames(), "elsewhere scout.fbx scout.xfg");
}

}  // namespace
