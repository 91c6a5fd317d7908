// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "support/test_host.h"

namespace {

using support::TestHost;

constexpr size_t kPlaces = 60;

/// Converts a damaged sample; success has to mean a sound package, which the host checks.
void ExpectNoHarm(TestHost& host, const std::string& model) {
  testing::internal::CaptureStdout();
  const auto result = static_cast<int>(host.Convert(model));
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(result == 0 || result == 2 || result == 5) << "result " << result;
  EXPECT_EQ(support::ReadWholeFile(host.folder.Path("model.fbx")), model);
}

TEST(DamagedSample, MayEndAnywhere) {
  const std::string sample = support::ReadWholeFile(TS3D_SAMPLES_FOLDER "/scout.fbx");
  TestHost host;
  for (size_t i = 0; i < kPlaces; ++i) {
    SCOPED_TRACE(i);
    ExpectNoHarm(host, sample.substr(0, sample.size() * i / kPlaces + i % 7));
  }
}

TEST(DamagedSample, MayHoldAnythingAnywhere) {
  const std::string sample = support::ReadWholeFile(TS3D_SAMPLES_FOLDER "/scout.fbx");
  TestHost host;
  for (size_t i = 0; i < kPlaces; ++i) {
    SCOPED_TRACE(i);
    std::string damaged = sample;
    // Runs that break numbers, counts, names and braces alike.
    const size_t at = sample.size() * i / kPlaces + i * i % 97;
    const char* const junk[] = {"-9", "}", "\"", "{{", "*99999999", "1e308", "\xff\xfe", ";"};
    const std::string_view piece = junk[i % std::size(junk)];
    damaged.replace(std::min(at, damaged.size() - piece.size()), piece.size(), piece);
    ExpectNoHarm(host, damaged);
  }
}

TEST(DamagedSample, MayMissConnectionsOrObjects) {
  const std::string sample = support::ReadWholeFile(TS3D_SAMPLES_FOLDER "/scout.fbx");
  for (const char* record :
       {"C: \"OO\"", "Geometry: ", "Model: ", "NodeAttribute: ", "Deformer: ", "Pose: ", "Material: ",
        "Texture: ", "Vertices: ", "PolygonVertexIndex: ", "UVIndex: ", "UV: ", "Indexes: ", "Weights: ",
        "TransformLink: ", "Matrix: ", "Materials: "}) {
    TestHost host;
    std::string damaged = sample;
    for (size_t at = 0; (at = damaged.find(record, at)) != std::string::npos; ++at) damaged[at] = 'X';
    ASSERT_NE(damaged, sample) << record;
    SCOPED_TRACE(record);
    ExpectNoHarm(host, damaged);
  }
}

}  // namespace
