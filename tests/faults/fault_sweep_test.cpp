// SPDX-License-Identifier: MIT
//
// Conversions and final settings in which every single system call fails in turn, once or from then on: each
// is told, and no package or document that looks whole is not.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <set>

#include "faults/system_faults.h"
#include "fbx_to_ts3d.h"
#include "support/package_reader.h"
#include "support/temp_folder.h"

// minizip loses its memory of a member whose header it cannot write.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:zipOpenNewFileInZip\n"; }

namespace {

namespace fs = std::filesystem;
using faults::Call;
using faults::Fault;
using faults::Lasting;
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

constexpr const char* kSuccess = "Successfully created CZP File\n";

class FaultSweep : public ::testing::TestWithParam<std::tuple<Call, Lasting>> {
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
    converted_ = Package(Path("strip.czp")).Members();
    document_ = ReadWholeFile(Path("strip.xfg"));
    package_ = ReadWholeFile(Path("strip.czp"));
  }
  void TearDown() override { fs::current_path(before_); }

  std::string Path(const std::string& name) const { return folder_.Path(name); }

  std::string ModelPath() const { return folder_.Path() + "\\strip.fbx"; }

  int Convert() {
    lines_ = Lines();
    // Without memory for the scene library the process has to end; memory fails from here on.
    lines_.armAt =
        std::get<Call>(GetParam()) == Call::Memory ? "Loading FBX Model" : "Initializing FBX Engine";
    return ConvertFBXFile(ModelPath().c_str(), 0, 0, 0, 0, nullptr, nullptr, nullptr, &lines_, Lines::Take,
                          nullptr);
  }
  int Finish() {
    lines_ = Lines();
    lines_.armAt = "Updating CZP File with Final Settings";
    return ConvertFBXFileFinish(ModelPath().c_str(), 150, 0, 0, "hip=pelvis", "strip=Skin", &lines_,
                                Lines::Take);
  }

  /// Runs `run` with one call failing, the next one each time, until none is left that could.
  template <typename Run, typename Check>
  void Sweep(const Run& run, const Check& check) {
    const auto [call, lasting] = GetParam();
    int nth = 0;
    for (bool failed = true; failed; ++nth) {
      fs::path trace = "call " + std::to_string(nth);
      std::optional<Fault> fault(std::in_place, call, nth, lasting);
      const int code = run();
      failed = Fault::Happened();
      fault.reset();
      SCOPED_TRACE(trace.string() + " gave " + std::to_string(code) + "\n" + lines_.text.data());
      check(code);
      if (HasFailure()) return;
    }
    RecordProperty("calls", nth - 1);
    EXPECT_GT(nth, 1) << "nothing failed";
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

  support::TempFolder folder_;
  fs::path before_;
  Lines lines_;
  std::vector<Member> converted_;
  std::string document_, package_;
};

class ConversionFaults : public FaultSweep {};
class FinishFaults : public FaultSweep {};

TEST_P(ConversionFaults, AConversionGivesAWholePackageOrNone) {
  // What an earlier run left must not be taken for what this one could not write.
  const auto convertOverOld = [&] {
    for (const Member& member : converted_) {
      if (!member.name.ends_with(".tga")) folder_.Write(member.name, "old");
    }
    folder_.Write("strip.czp", package_);
    return Convert();
  };
  Sweep(convertOverOld, [&](int code) {
    const std::optional<std::vector<Member>> members = ReadPackage();
    EXPECT_EQ(lines_.Told(kSuccess), code == 0);
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
  });
}

TEST_P(FinishFaults, FinalSettingsLeaveTheOldOrTheNew) {
  ASSERT_EQ(Finish(), 0);
  const std::string newDocument = ReadWholeFile(Path("strip.xfg"));
  const std::vector<Member> newMembers = Package(Path("strip.czp")).Members();
  const auto restoreAndFinish = [&] {
    folder_.Write("strip.xfg", document_);
    folder_.Write("strip.czp", package_);
    for (const char* name : {"strip.xfg.new", "strip.czp.new"}) fs::remove(Path(name));
    return Finish();
  };
  Sweep(restoreAndFinish, [&](int code) {
    const std::string document = ReadWholeFile(Path("strip.xfg"));
    const std::vector<Member> members = Package(Path("strip.czp")).Members();
    EXPECT_EQ(document, code == 6 || code == 7 ? document_ : newDocument);
    EXPECT_EQ(members, code == 0 ? newMembers : converted_);
    EXPECT_EQ(lines_.Told(kSuccess), code == 0);
    EXPECT_EQ(lines_.Told(">>> FAILED TO READ .XFG File!"), code == 6);
    EXPECT_EQ(lines_.Told(">>> FAILED TO WRITE .XFG File!"), code == 7);
    EXPECT_EQ(lines_.Told(">>> Failed to Open CZP File") || lines_.Told(">>> Failed updating CZP File"),
              code == 8);
    EXPECT_TRUE(code == 0 || (code >= 6 && code <= 8));
    EXPECT_FALSE(fs::exists(Path("strip.xfg.new")) || fs::exists(Path("strip.czp.new")));
  });
}

std::string CaseName(const testing::TestParamInfo<std::tuple<Call, Lasting>>& info) {
  const char* const calls[] = {"Open", "Read", "Write", "Close", "Rename", "Remove", "Map", "Memory"};
  return std::string(calls[static_cast<size_t>(std::get<Call>(info.param))]) +
         (std::get<Lasting>(info.param) == Lasting::Once ? "Once" : "FromThenOn");
}

const auto kLastings = testing::Values(Lasting::Once, Lasting::FromThenOn);

INSTANTIATE_TEST_SUITE_P(Calls, ConversionFaults,
                         testing::Combine(testing::Values(Call::Open, Call::Read, Call::Write, Call::Close,
                                                          Call::Remove, Call::Map, Call::Memory),
                                          kLastings),
                         CaseName);
INSTANTIATE_TEST_SUITE_P(Calls, FinishFaults,
                         testing::Combine(testing::Values(Call::Open, Call::Read, Call::Write, Call::Close,
                                                          Call::Rename, Call::Remove, Call::Memory),
                                          kLastings),
                         CaseName);

}  // namespace
