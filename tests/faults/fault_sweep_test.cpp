// SPDX-License-Identifier: MIT
//
// Conversions and final settings in which every single system call fails in turn, once or from then on: each
// is told, and no package or document that looks whole is not.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "faults/strip_runs.h"

// minizip loses its memory of a member whose header it cannot write.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:zipOpenNewFileInZip\n"; }

namespace {

namespace fs = std::filesystem;
using faults::Call;
using faults::Fault;
using faults::Lasting;
using faults::Member;
using faults::Package;
using faults::ReadWholeFile;

class FaultSweep : public faults::StripRuns, public ::testing::WithParamInterface<std::tuple<Call, Lasting>> {
 protected:
  void SetUp() override {
    StripRuns::SetUp();
    // Without memory for the scene library the process has to end; memory fails from here on.
    if (std::get<Call>(GetParam()) == Call::Memory) armAt_ = "Loading FBX Model";
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
};

class ConversionFaults : public FaultSweep {};
class FinishFaults : public FaultSweep {};
class HandleFaults : public FaultSweep {
 protected:
  void SetUp() override {
    FaultSweep::SetUp();
    fs::create_directory(Path("work"));
    setenv("TMPDIR", Path("work").c_str(), 1);
    FbxToTs3dOptions options{};
    options.size = sizeof options;
    options.context = &lines_;
    options.onLine = [](void* lines, const char* line) { faults::Lines::Take(lines, line); };
    ASSERT_EQ(FbxToTs3dSetOptions(converter_.get(), &options), 0);
    ASSERT_EQ(ConvertByHandle(), 0);
    TakeAsReference();
  }
  void TearDown() override {
    unsetenv("TMPDIR");
    FaultSweep::TearDown();
  }
  int ConvertByHandle() {
    lines_ = faults::Lines();
    const std::string model = Path("strip.fbx"), package = Path("strip.czp");
    faults::Fault::Arm();
    return FbxToTs3dConvert(converter_.get(), model.c_str(), package.c_str());
  }

  std::unique_ptr<FbxToTs3dConverter, decltype(&FbxToTs3dDestroy)> converter_{FbxToTs3dCreate(),
                                                                              FbxToTs3dDestroy};
};

TEST_P(ConversionFaults, AConversionGivesAWholePackageOrNone) {
  // What an earlier run left must not be taken for what this one could not write.
  const auto convertOverOld = [&] {
    for (const Member& member : converted_) {
      if (!member.name.ends_with(".tga")) folder_.Write(member.name, "old");
    }
    folder_.Write("strip.czp", package_);
    return Convert();
  };
  Sweep(convertOverOld, [&](int code) { ExpectWholePackageOrNone(code); });
  EXPECT_TRUE(incomplete_ > 0 || std::get<Call>(GetParam()) != Call::Write);
}

TEST_P(FinishFaults, FinalSettingsLeaveTheOldOrTheNew) {
  ASSERT_EQ(Finish(), 0);
  const std::string newDocument = ReadWholeFile(Path("strip.xfg"));
  const std::vector<Member> newMembers = Package(Path("strip.czp")).Members();
  const std::string names = folder_.Names();
  const auto restoreAndFinish = [&] {
    folder_.Write("strip.xfg", document_);
    folder_.Write("strip.czp", package_);
    return Finish();
  };
  Sweep(restoreAndFinish, [&](int code) {
    const std::string document = ReadWholeFile(Path("strip.xfg"));
    const std::vector<Member> members = Package(Path("strip.czp")).Members();
    EXPECT_EQ(document, code == 6 || code == 7 ? document_ : newDocument);
    EXPECT_EQ(members, code == 0 ? newMembers : converted_);
    EXPECT_EQ(lines_.Told(faults::kSuccess), code == 0);
    EXPECT_EQ(lines_.Told(">>> FAILED TO READ .XFG File!"), code == 6);
    EXPECT_EQ(lines_.Told(">>> FAILED TO WRITE .XFG File!"), code == 7);
    EXPECT_EQ(lines_.Told(">>> Failed to Open CZP File") || lines_.Told(">>> Failed updating CZP File"),
              code == 8);
    EXPECT_TRUE(code == 0 || (code >= 6 && code <= 8));
    EXPECT_EQ(folder_.Names(), names);
  });
}

TEST_P(HandleFaults, APackageIsTheOldOneOrWholeAndNothingElseIsLeft) {
  const std::string names = folder_.Names();
  const auto convertOverOld = [&] {
    folder_.Write("strip.czp", "old");
    return ConvertByHandle();
  };
  Sweep(convertOverOld, [&](int code) {
    if (code == 0) {
      ExpectWholeOrTold(Package(Path("strip.czp")).Members());
    } else {
      EXPECT_TRUE(ReadWholeFile(Path("strip.czp")) == "old");
      EXPECT_NE(*FbxToTs3dErrorText(converter_.get()), '\0');
    }
    EXPECT_EQ(folder_.Names(), names);
    EXPECT_EQ(folder_.Names("work"), "");
  });
}

TEST_P(HandleFaults, ChecksAndFinalSettingsComeBack) {
  const std::string model = Path("strip.fbx"), package = Path("strip.czp");
  const FbxToTs3dFinalSettings settings{sizeof settings, 50, 0, 0, "hip=pelvis", "strip=Skin"};
  const auto expectReason = [&](int code) {
    EXPECT_EQ(*FbxToTs3dErrorText(converter_.get()) == '\0', code == 0);
    EXPECT_TRUE(*FbxToTs3dResultJson(converter_.get()) != '\0' || code == FBX_TO_TS3D_OUT_OF_MEMORY);
    EXPECT_EQ(folder_.Names("work"), "");
  };
  const auto check = [&] {
    faults::Fault::Arm();
    return FbxToTs3dCheck(converter_.get(), model.c_str());
  };
  const auto finish = [&] {
    folder_.Write("strip.czp", package_);
    faults::Fault::Arm();
    return FbxToTs3dFinish(converter_.get(), package.c_str(), &settings);
  };
  const Call call = std::get<Call>(GetParam());
  if (call == Call::Memory || call == Call::Map) Sweep(check, expectReason);
  if (call != Call::Map) Sweep(finish, expectReason);
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
INSTANTIATE_TEST_SUITE_P(Calls, HandleFaults,
                         testing::Combine(testing::Values(Call::Open, Call::Read, Call::Write, Call::Close,
                                                          Call::Rename, Call::Map, Call::Memory),
                                          kLastings),
                         CaseName);
INSTANTIATE_TEST_SUITE_P(Calls, FinishFaults,
                         testing::Combine(testing::Values(Call::Open, Call::Read, Call::Write, Call::Close,
                                                          Call::Rename, Call::Remove, Call::Memory),
                                          kLastings),
                         CaseName);

}  // namespace
