// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <string_view>

#include "package/deflate_ahead.h"
#include "support/temp_folder.h"

namespace {

constexpr int kLevel = 3;

/// 100 KB and more, different for each seed.
std::string Content(unsigned seed) {
  std::string bytes(100'000 + seed, '\0');
  for (char& byte : bytes) byte = static_cast<char>((seed = seed * 1664525 + 1013904223) >> 30);
  return bytes;
}

std::string Deflated(const ts3d::DeflatedMember& member) { return {member.bytes.get(), member.size}; }

std::string DeflatedAlone(std::string_view bytes) {
  ts3d::DeflatedMember member;
  EXPECT_TRUE(ts3d::MemberDeflater(kLevel).Deflate(bytes, member));
  return Deflated(member);
}

class DeflateAheadTest : public testing::Test {
 protected:
  std::string Write(const std::string& name, std::string_view bytes) {
    std::ofstream(folder_.Path(name), std::ios::binary) << bytes;
    return folder_.Path(name);
  }

  support::TempFolder folder_;
  ts3d::DeflateAhead ahead_{kLevel};
};

TEST_F(DeflateAheadTest, FilesBecomeWhatTheyBecomeOneByOne) {
  for (unsigned i = 0; i < 40; ++i) ahead_.Start(Write("mesh" + std::to_string(i), Content(i)));
  int taken = 0;
  for (unsigned i = 0; i < 40; ++i) {
    ts3d::DeflatedMember member;
    // One whose turn has not come is the caller's.
    if (!ahead_.Take(folder_.Path("mesh" + std::to_string(i)), member)) continue;
    EXPECT_EQ(Deflated(member), DeflatedAlone(Content(i))) << i;
    EXPECT_EQ(member.unpackedSize, Content(i).size());
    ++taken;
  }
  EXPECT_GT(taken, 0);
}

TEST_F(DeflateAheadTest, AFileThatIsWrittenAgainCountsAsItIsThen) {
  for (unsigned i = 0; i < 20; ++i) {
    ahead_.Forget(folder_.Path("MESH"));
    ahead_.Start(Write("mesh", Content(i)));
  }
  ts3d::DeflatedMember member;
  if (ahead_.Take(folder_.Path("mesh"), member)) {
    EXPECT_EQ(Deflated(member), DeflatedAlone(Content(19)));
  }
  EXPECT_FALSE(ahead_.Take(folder_.Path("mesh"), member));
}

TEST_F(DeflateAheadTest, FilesThatAreGoneOrSmallAreTheCallers) {
  ahead_.Start(folder_.Path("missing"));
  ahead_.Start(Write("small", "few bytes"));
  ts3d::DeflatedMember member;
  EXPECT_FALSE(ahead_.Take(folder_.Path("missing"), member));
  EXPECT_FALSE(ahead_.Take(folder_.Path("small"), member));
}

}  // namespace
