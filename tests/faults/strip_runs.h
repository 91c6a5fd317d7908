// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>

#include "faults/system_faults.h"
#include "fbx_to_ts3d.h"
#include "support/package_reader.h"
#include "support/temp_folder.h"

namespace faults {

namespace fs = std::filesystem;
using support::Member;
using support::Package;
using support::ReadWholeFile;

/// What the host saw of a run, kept without allocating while memory fails.
struct Lines {
  std::array<char, 1 << 16> text{};
  size_t size = 0;
  const char* armAt = "";

  static void Take(void* self, const char* line) {
    auto& lines = *static_cast<Lines*>(self);
    const std::string_view added = line;
    if (lines.size + added.size() < lines.text.size()) {
      std::copy(added.begin(), added.end(), lines.text.begin() + static_cast<ptrdiff_t>(lines.size));
      lines.size += added.size();
      lines.text[lines.size++] = '\n';
    }
    if (added == lines.armAt) Fault::Arm();
  }
  bool Told(std::string_view part) const {
    return std::string_view(text.data(), size).find(part) != std::string_view::npos;
  }
};

inline constexpr const char* kSuccess = "Successfully created CZP File\n";

/// A model in a folder of its own that is converted by the library, over and over.
class StripRuns : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::copy_file(TS3D_FIXTURES_FOLDER "/strip_7500_binary.fbx", Path("strip.fbx"));
    // Too large for one buffer, and not to be made smaller.
    std::string picture;
    for (uint32_t noise = 1; picture.size() < 40000; noise = noise * 1664525 + 1013904223) {
      picture += static_cast<char>(noise >> 24);
    }
    folder_.Write("cloth.tga", picture);
    before_ = fs::current_path();
    fs::create_directory(Path("elsewhere"));
    fs::current_path(Path("elsewhere"));
    ASSERT_EQ(Convert(), 0);
    TakeAsReference();
  }
  void TakeAsReference() {
    converted_ = Package(Path("strip.czp")).Members();
    document_ = ReadWholeFile(Path("strip.xfg"));
    package_ = ReadWholeFile(Path("strip.czp"));
  }
  void TearDown() override { fs::current_path(before_); }

  std::string Path(const std::string& name) const { return folder_.Path(name); }

  std::string ModelPath() const { return folder_.Path() + "\\strip.fbx"; }

  int Convert() {
    lines_ = Lines();
    lines_.armAt = armAt_;
    return ConvertFBXFile(ModelPath().c_str(), 0, 0, 0, 0, nullptr, nullptr, nullptr, &lines_, Lines::Take,
                          nullptr);
  }
  int Finish() {
    lines_ = Lines();
    lines_.armAt = "Updating CZP File with Final Settings";
    return ConvertFBXFileFinish(ModelPath().c_str(), 150, 0, 0, "hip=pelvis", "strip=Skin", &lines_,
                                Lines::Take);
  }

  /// The members of the package; none when there is nothing that could be taken for one.
  std::optional<std::vector<Member>> ReadPackage() const {
    if (!fs::exists(Path("strip.czp"))) return std::nullopt;
    try {
      return Package(Path("strip.czp")).Members();
    } catch (const std::runtime_error&) {
      return std::nullopt;
    }
  }

  /// A member that is not what it should be is empty and was told.
  void ExpectWholeOrTold(const std::vector<Member>& members) const {
    ASSERT_EQ(members.size(), converted_.size());
    for (size_t i = 0; i < members.size(); ++i) {
      EXPECT_EQ(members[i].name, converted_[i].name);
      if (members[i] == converted_[i]) continue;
      EXPECT_EQ(members[i].bytes, "") << members[i].name;
      EXPECT_TRUE(lines_.Told("ing " + members[i].name)) << members[i].name;
    }
  }

  bool LacksAToldMember(const std::vector<Member>& members) const {
    return std::any_of(members.begin(), members.end(), [&](const Member& member) {
      const bool isNeeded = member.name == "skeleton.csf" || member.name == "strip.xfg";
      return isNeeded && member.bytes.empty() && lines_.Told("ing " + member.name);
    });
  }

  /// What has to hold after any conversion, whatever failed in it.
  void ExpectWholePackageOrNone(int code) {
    const std::optional<std::vector<Member>> members = ReadPackage();
    EXPECT_EQ(lines_.Told(kSuccess), code == 0);
    const bool isIncomplete = lines_.Told(">>> Failed to Complete CZP File\n");
    EXPECT_TRUE(!isIncomplete || (code == 3 && !fs::exists(Path("strip.czp"))));
    incomplete_ += isIncomplete;
    if (code == 0) {
      ASSERT_TRUE(members);
      ExpectWholeOrTold(*members);
      EXPECT_EQ(ReadWholeFile(Path("strip.xfg")), document_);
    } else {
      EXPECT_TRUE(code >= 2 && code <= 4);
      // Before anything was written, an older package is still there. One that could not get skeleton or
      // document has an empty member in its place.
      EXPECT_TRUE(!members || ReadWholeFile(Path("strip.czp")) == package_ || LacksAToldMember(*members));
    }
  }

  support::TempFolder folder_;
  fs::path before_;
  Lines lines_;
  const char* armAt_ = "Initializing FBX Engine";  ///< the line of a conversion from which on calls fail
  std::vector<Member> converted_;
  std::string document_, package_;
  int incomplete_ = 0;  ///< runs that told of a package that was deleted
};

}  // namespace faults
