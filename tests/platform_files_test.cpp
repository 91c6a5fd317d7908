// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <iomanip>
#include <sstream>

#include "platform/replacement.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;
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

TEST(PlatformFiles, WhatIsNoRegularFileIsNeitherOpenedNorWaitedFor) {
  const TempFolder folder;
  const std::string pipe = folder.Path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::string error;
  for (const std::string& path : {pipe, folder.Path(), std::string("/dev/zero")}) {
    for (const char* mode : {"rb", "r+", "wb"}) EXPECT_FALSE(platform::OpenFile(path, mode)) << path;
    EXPECT_FALSE(platform::MappedFile().Open(path, error));
    EXPECT_EQ(error, path == folder.Path() ? "it is a folder" : "it is not a regular file");
  }
}

/// Puts a file that holds `text` into the place of `target`.
bool Replace(const std::string& target, const std::string& text, platform::Links links) {
  platform::Replacement file(target, links);
  platform::FilePtr stream = file.Create("wb");
  if (!stream) return false;
  std::fputs(text.c_str(), stream.get());
  stream.reset();
  return file.TakePlace();
}

TEST(PlatformFiles, ReplacementsKeepPermissionsAndFollowLinksWhenTheyAreTo) {
  const TempFolder folder;
  constexpr fs::perms kPrivate = fs::perms::owner_read | fs::perms::owner_write;
  const std::string path = folder.Write("file", "old"), link = folder.Path("link");
  fs::permissions(path, kPrivate);
  fs::create_symlink(path, link);
  EXPECT_TRUE(Replace(link, "new", platform::Links::Follow));
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(support::ReadWholeFile(path), "new");
  EXPECT_EQ(fs::status(path).permissions(), kPrivate);
  EXPECT_TRUE(Replace(link, "made", platform::Links::Replace));
  EXPECT_FALSE(fs::is_symlink(link));
  EXPECT_EQ(support::ReadWholeFile(link), "made");
  EXPECT_NE(fs::status(link).permissions(), kPrivate) << "of a file that was not replaced";
  { const auto unfinished = platform::Replacement(path).Create("wb"); }
  EXPECT_EQ(support::ReadWholeFile(path), "new");
  EXPECT_EQ(folder.Names(), "file link");
}

TEST(PlatformFiles, InFoldersThatTakeNoFilesReplacementsWriteOverOrPutBack) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "old");
  const uid_t user = geteuid();
  constexpr uid_t kNobody = 65534;
  fs::permissions(path, fs::perms(0666));
  fs::permissions(folder.Path(), fs::perms(0555));
  ASSERT_TRUE(user != 0 || seteuid(kNobody) == 0);
  EXPECT_TRUE(Replace(path, "longer than before", platform::Links::Follow));
  EXPECT_EQ(support::ReadWholeFile(path), "longer than before");
  EXPECT_TRUE(Replace(path, "short", platform::Links::Follow));
  EXPECT_FALSE(Replace(folder.Path("other"), "none", platform::Links::Follow));
  platform::Replacement large(path);
  ASSERT_EQ(std::fputs(std::string(100, 'x').c_str(), large.Create("wb").get()), 1);
  rlimit all{};
  getrlimit(RLIMIT_FSIZE, &all);
  const rlimit little{50, all.rlim_max};
  signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &little);
  EXPECT_FALSE(large.TakePlace());
  setrlimit(RLIMIT_FSIZE, &all);
  ASSERT_TRUE(user != 0 || seteuid(user) == 0);
  fs::permissions(folder.Path(), fs::perms(0755));
  EXPECT_EQ(support::ReadWholeFile(path), "short");
  EXPECT_EQ(folder.Names(), "file");
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
