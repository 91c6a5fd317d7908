// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "mesh/claims/weigh_claims.h"
#include "scene/assemble/build_scene.h"
#include "support/check_scene.h"
#include "support/load_scene.h"
#include "support/temp_folder.h"

namespace {

/// A fixture, one of everything: a skinned, textured mesh with
/// two materials and mostly a shape, bones and a bind pose.
std::string Fixture(const std::string& name) {
  const std::string bytes = support::ReadWholeFile(TS3D_SOURCE_FOLDER "/tests/fixtures/" + name + ".fbx");
  EXPECT_NE(support::LoadSceneBytes(bytes)->GetRootNode()->GetChildCount(), 0) << name;
  return bytes;
}

/// Builds and checks the scene of a file that may be damaged.
void ReadAndCheck(const std::string& bytes) {
  support::ReadResult result = support::ReadRecords(bytes);
  if (!result.error.empty()) return;
  scene::KFbxScene scene("scene");
  BuildScene(std::move(result.tree), scene);
  if (ts3d::WeighClaims(scene).empty()) support::CheckScene(scene);
}

TEST(DamagedFiles, EveryByteOfABinaryFileMayBeWrong) {
  const std::string file = Fixture("strip_7400_binary_big_endian");
  for (size_t i = 27; i < file.size(); ++i) {
    for (const int change : {0x01, 0x80, 0xff}) {
      std::string damaged = file;
      damaged[i] = static_cast<char>(damaged[i] ^ change);
      ReadAndCheck(damaged);
      if (testing::Test::HasFailure()) FAIL() << "byte " << i << " changed by " << change;
    }
  }
}

TEST(DamagedFiles, EveryByteOfATextMayBeWrongOrTheLast) {
  for (const char* name : {"strip_7300_ascii", "strip_6100_ascii", "strip_5800_ascii"}) {
    const std::string file = Fixture(name);
    for (size_t i = 0; i < file.size(); ++i) {
      ReadAndCheck(file.substr(0, i));
      for (const char c : {'9', '-', '}', '"', ',', ';'}) {
        std::string damaged = file;
        damaged[i] = c;
        if (i >= 25) ReadAndCheck(damaged);
      }
      if (testing::Test::HasFailure()) FAIL() << name << ", byte " << i;
    }
  }
}

}  // namespace
