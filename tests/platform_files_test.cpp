// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>
#include <iomanip>
#include <sstream>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace {

using support::TempFolder;

TEST(PlatformFiles, FoldersAreMadeAndToldFromFiles) {
  const TempFolder folder;
  const std::string sub = folder.Path() + "\\sub";
  EXPECT_TRUE(platform::MakeFolder(sub));
  EXPECT_TRUE(platform::MakeFolder(sub));
  folder.Write("sub/file", "abc");
  EXPECT_EQ(platform::FileSize(sub + "\\file"), 3);
  EXPECT_FALSE(platform::MakeFolder(sub + "\\file"));
  EXPECT_FALSE(platform::MakeFolder(folder.Path("missing/sub")));
  EXPECT_TRUE(platform::FileExists(sub));
  EXPECT_EQ(platform::FileSize(sub), -1);
  EXPECT_FALSE(platform::RemoveFile(sub));
  EXPECT_TRUE(platform::RemoveFile(sub + "\\file"));
  EXPECT_FALSE(platform::RemoveFile(sub + "\\file"));
}

TEST(PlatformFiles, TwoPathsMayLeadToOneFile) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "x"), copy = folder.Write("copy", "x");
  std::filesystem::create_symlink(path, folder.Path("link"));
  EXPECT_TRUE(platform::IsSameFile(path, folder.Path("./file")));
  EXPECT_TRUE(platform::IsSameFile(path, folder.Path("link")));
  EXPECT_FALSE(platform::IsSameFile(path, copy));
  EXPECT_FALSE(platform::IsSameFile(folder.Path("missing"), folder.Path("missing")));
}

TEST(PlatformFiles, WriteTimesAreDosDatesInLocalTime) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "");
  struct tm time {};
  std::istringstream("2009-11-23 14:05:31") >> std::get_time(&time, "%Y-%m-%d %H:%M:%S");
  time.tm_isdst = -1;
  std::filesystem::last_write_time(
      path, std::chrono::file_clock::from_sys(std::chrono::system_clock::from_time_t(std::mktime(&time))));
  // Year 29, month 11, day 23: 0011101 1011 10111. Hour 14, minute 5, 15 double seconds: 01110 000101 01111.
  EXPECT_EQ(platform::DosWriteTime(path), 0x3b7770afu);
  EXPECT_EQ(platform::DosWriteTime(folder.Path("missing")), 0u);
}

}  // namespace
