// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/status.h"
#include "core/work_file.h"
#include "support/temp_folder.h"

namespace {

using testing::ElementsAre;

void Record(void* lines, const char* text) { static_cast<std::vector<std::string>*>(lines)->push_back(text); }

TEST(StatusLines, ReachTheHostAsTheyStand) {
  std::vector<std::string> lines;
  ts3d::ConversionJob job;
  job.callbackContext = &lines;
  job.statusCallback = Record;
  ts3d::StatusLog(job, "100%s done\n");
  ts3d::ReportTagged(job, "L_femur", "101");
  ts3d::ReportTagged(job, "", "-1");
  EXPECT_THAT(lines, ElementsAre("100%s done\n", "***101:L_femur", "***-1:"));
}

TEST(StatusLines, GoNowhereWithoutACallback) {
  std::vector<std::string> lines;
  ts3d::ConversionJob job;
  job.callbackContext = &lines;
  ts3d::StatusLog(job, "text");
  ts3d::ReportTagged(job, "text", "100");
  EXPECT_THAT(lines, ElementsAre());
}

TEST(Messages, AreJoinedFromUpToFivePieces) {
  EXPECT_EQ(ts3d::ComposeMessage(">>> Error in reading ", "a.cmf"), ">>> Error in reading a.cmf");
  EXPECT_EQ(ts3d::ComposeMessage("a", "b", "c", "d", "e"), "abcde");
}

TEST(DebugTrace, IsCutTo1022CharactersAndEndsItsLine) {
  setenv("FBX_TO_TS3D_TRACE", "1", 1);
  testing::internal::CaptureStderr();
  ts3d::DebugTrace("short");
  ts3d::DebugTrace(std::string(1023, 'x'));
  unsetenv("FBX_TO_TS3D_TRACE");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "short\n" + std::string(1022, 'x') + "\n");
}

TEST(ByteWriter, WritesLittleEndianNumbers) {
  const support::TempFolder folder;
  const platform::FilePtr file = platform::OpenFile(folder.Path("bytes"), "wb");
  ts3d::ByteWriter out(file.get());
  out.Bytes("CSF", 4);
  out.Int32(900);
  out.Int32(-2);
  out.Float32(-0.5f);
  ASSERT_TRUE(out.Flush());
  std::fflush(file.get());
  EXPECT_EQ(support::ReadWholeFile(folder.Path("bytes")),
            std::string("CSF\0\x84\x03\0\0\xfe\xff\xff\xff\0\0\0\xbf", 16));
}

TEST(ByteWriter, KeepsTheOrderOfSmallAndLargePieces) {
  const support::TempFolder folder;
  {
    const platform::FilePtr file = platform::OpenFile(folder.Path("bytes"), "wb");
    ts3d::ByteWriter out(file.get());
    out.Bytes("ab", 2);
    out.Bytes(std::string(100000, 'x').data(), 100000);
    for (int i = 0; i < 10000; ++i) out.Int32(0x64636261);
  }
  const std::string bytes = support::ReadWholeFile(folder.Path("bytes"));
  ASSERT_EQ(bytes.size(), 140002u);
  EXPECT_EQ(bytes.substr(0, 3), "abx");
  EXPECT_EQ(bytes.substr(100000, 6), "xxabcd");
  EXPECT_EQ(bytes.substr(139998), "abcd");
}

TEST(ByteWriter, RemembersThatItHasNoFile) {
  ts3d::ByteWriter out(nullptr);
  EXPECT_TRUE(out.Flush());
  out.Int32(1);
  EXPECT_FALSE(out.Flush());
  EXPECT_FALSE(out.Flush());
}

TEST(WorkFiles, AreOpenedInTheModelsFolderUnderPlainNamesOnly) {
  const support::TempFolder folder;
  folder.Write("model.fbx", "model");
  folder.Write("other.tga", "picture");
  ts3d::ConversionJob job;
  job.modelDirectory = folder.Path() + "\\";
  job.inputPath = folder.Path("model.fbx");
  EXPECT_TRUE(ts3d::OpenWorkFile(job, "other.tga", "rb"));
  EXPECT_TRUE(ts3d::WorkFileExists(job, "other.tga"));
  EXPECT_FALSE(ts3d::WorkFileExists(job, "none.tga"));
  EXPECT_FALSE(ts3d::WorkFileExists(job, "."));
  EXPECT_FALSE(ts3d::OpenWorkFile(job, "../stray", "wb"));
  EXPECT_FALSE(ts3d::OpenWorkFile(job, "model.fbx", "wb"));
  EXPECT_EQ(support::ReadWholeFile(folder.Path("model.fbx")), "model");
}

}  // namespace
