// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/character.h"
#include "support/test_host.h"

namespace {

using support::Character;
using support::Identity;
using support::ScaleMatrix;
using support::TestHost;
using testing::ElementsAre;

/// All warnings of the last conversion, in their order.
std::vector<std::string> Warnings(const TestHost& host) {
  std::vector<std::string> warnings;
  for (const std::string& line : host.lines) {
    if (line.starts_with("***") || line.starts_with(">>>") || line.starts_with("No Bind")) {
      warnings.push_back(line);
    }
  }
  return warnings;
}

std::vector<std::string> WarningsOfBoundBone(const support::Matrix16& matrix, bool isLocal = false) {
  Character model;
  const auto bone = model.Bone("L:hip");
  model.BindPose({{bone, matrix, isLocal}});
  TestHost host;
  host.Convert(model.Text());
  return Warnings(host);
}

TEST(SkeletonWarnings, TellOfUnevenMirroredAndLocalMatrices) {
  for (const auto& sound : {ScaleMatrix(1, 1.005, 1), ScaleMatrix(3, 3, 3)}) {
    EXPECT_THAT(WarningsOfBoundBone(sound), ElementsAre());
  }
  for (const auto& uneven : {ScaleMatrix(1, 1.02, 1), ScaleMatrix(1, 1, 0.98)}) {
    EXPECT_THAT(WarningsOfBoundBone(uneven),
                ElementsAre("***101:hip", ">>> The Bone 'hip'", ">>> Has a non-uniform scale value.",
                            ">>> If you see oddities in the skeleton or rigging",
                            ">>> Go back to your original modeling program and",
                            ">>> correct this, then re-export it to FBX."));
  }
  for (const auto& mirrored : {ScaleMatrix(-1, 1, 1), ScaleMatrix(1, -3, 1)}) {
    EXPECT_THAT(WarningsOfBoundBone(mirrored),
                ElementsAre("***100:hip", ">>> The Bone 'hip'", ">>> is 'mirrored' or 'reflected'"));
  }
  EXPECT_THAT(WarningsOfBoundBone(Identity(), true),
              ElementsAre("***102:hip", ">>> Bind Pose Contains LOCAL MATRIX!!!"));
}

TEST(SkeletonWarnings, NameTheNodesThatTheBindPoseLacks) {
  Character model;
  const auto root = model.Bone("root");
  model.Bone("a:b:tip", root);
  model.BindPose({{root, Identity()}});
  TestHost host;
  host.Convert(model.Text());
  EXPECT_THAT(Warnings(host), ElementsAre("No Bind Pose Data for: a:b:tip"));
}

TEST(SkeletonWarnings, TellOfASecondRootOnceInTheLifeOfTheProcess) {
  Character model;
  const auto root = model.Bone("root"), second = model.Bone("second"), third = model.Bone("third");
  model.BindPose({{root, Identity()}, {second, Identity()}, {third, Identity()}});
  TestHost host;
  host.Convert(model.Text());
  EXPECT_THAT(Warnings(host), ElementsAre("***-1:", ">>> This skeleton does NOT have a single Root Bone",
                                          ">>> and will thus NOT import the rig correctly!"));
  EXPECT_EQ(host.Bones().size(), 1u) << "only the first is taken";
  host.Convert(model.Text());
  EXPECT_THAT(Warnings(host), ElementsAre());
}

TEST(SkeletonExtraction, LooksBelowNodesOfEveryAttributeButNotBelowOnesWithout) {
  Character hidden;
  hidden.Bone("root", hidden.Node("group"));
  TestHost host;
  host.Convert(hidden.Text());
  EXPECT_EQ(host.Bones()[0].name, "dummy_bone");
  Character found;
  found.Bone("root", found.Triangle("Body", found.Null("group")).node);
  host.Convert(found.Text());
  EXPECT_EQ(host.Bones()[0].name, "root");
}

}  // namespace
