// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "skeleton/skeleton_state.h"
#include "support/character.h"
#include "support/test_host.h"

namespace {

using support::Character;
using support::TestHost;
using testing::ElementsAre;
using testing::FloatNear;
using testing::Pair;

struct Rig {
  Rig() : root(model.Bone("root")), arm(model.Bone("arm", root)), body(model.Triangle("Body")) {}
  /// Converts the rig and returns the influences of vertex 0.
  std::vector<std::pair<int32_t, float>> Influences() {
    EXPECT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
    return host.Mesh("Body").vertices[0].influences;
  }
  bool IsWeighted(int32_t bone) const { return host.job.skeleton->bones.FindById(bone)->weighted; }

  Character model;
  Character::Id root, arm;
  Character::MeshNode body;
  TestHost host;
};

MATCHER_P2(Influence, bone, weight, "") {
  return testing::ExplainMatchResult(Pair(bone, FloatNear(weight, 1e-6f)), arg, result_listener);
}

TEST(Influences, AreOrderedByBoneAndSumToOne) {
  Rig rig;
  rig.model.Weights(rig.body, rig.arm, {0}, {0.6});
  rig.model.Weights(rig.body, rig.root, {0}, {0.2});
  EXPECT_THAT(rig.Influences(), ElementsAre(Influence(0, 0.25f), Influence(1, 0.75f)));
}

TEST(Influences, AddUpWhereAClusterListsAPointTwice) {
  Rig rig;
  rig.model.Weights(rig.body, rig.root, {0, 1, 0}, {0.1, 1.0, 0.2});
  rig.model.Weights(rig.body, rig.arm, {0}, {0.1});
  EXPECT_THAT(rig.Influences(), ElementsAre(Influence(0, 0.75f), Influence(1, 0.25f)));
}

TEST(Influences, AddUpWhereTwoClustersFollowOneBone) {
  Rig rig;
  rig.model.Weights(rig.body, rig.arm, {0}, {0.1});
  rig.model.Weights(rig.body, rig.root, {0}, {0.1});
  rig.model.Weights(rig.body, rig.arm, {0}, {0.2});
  EXPECT_THAT(rig.Influences(), ElementsAre(Influence(0, 0.25f), Influence(1, 0.75f)));
}

TEST(Influences, OfPointsThatDoNotExistAreLeftOut) {
  Rig rig;
  rig.model.Weights(rig.body, rig.arm, {3, -1, 0}, {0.5, 0.5, 0.5});
  EXPECT_THAT(rig.Influences(), ElementsAre(Influence(1, 1.0f)));
}

TEST(Influences, MakeABoneWeightedOnlyAboveATwentieth) {
  struct {
    std::vector<double> points, weights;
    bool isWeighted;
  } const cases[] = {{{0}, {0.05}, false},
                     {{0}, {0.0501}, true},
                     {{0, 1}, {0.03, 0.03}, false},
                     {{0, 0}, {0.03, 0.03}, true},
                     {{0, 1}, {0.01, 0.9}, true}};
  for (size_t i = 0; i < std::size(cases); ++i) {
    Rig rig;
    rig.model.Weights(rig.body, rig.arm, cases[i].points, cases[i].weights);
    EXPECT_THAT(rig.Influences(), ElementsAre(Influence(1, 1.0f))) << "case " << i;
    EXPECT_EQ(rig.IsWeighted(1), cases[i].isWeighted) << "case " << i;
    EXPECT_FALSE(rig.IsWeighted(0)) << "case " << i;
  }
}

TEST(Influences, FindTheirBoneByItsCleanedNameOrWhatFollowsItsLastColon) {
  Rig rig;
  const auto hidden = rig.model.Node("hidden");
  rig.model.Weights(rig.body, rig.model.Bone("a:b:root", hidden), {0}, {0.3});
  rig.model.Weights(rig.body, rig.model.Bone("ar@?m", hidden), {0}, {0.1});
  EXPECT_THAT(rig.Influences(), ElementsAre(Influence(0, 0.75f), Influence(1, 0.25f)));
  EXPECT_THAT(rig.host.LinesThatBegin(">>> Unable"), ElementsAre());
}

TEST(Influences, OfAnUnknownBoneAreLeftOutWithItsName) {
  Rig rig;
  const auto hidden = rig.model.Node("hidden");
  rig.model.Weights(rig.body, rig.model.Bone("no:such:Arm", hidden), {0}, {1.0});
  rig.model.Weights(rig.body, rig.model.Bone("rootBone", hidden), {0}, {1.0});
  rig.model.Weights(rig.body, rig.model.Bone("", hidden), {0}, {1.0});
  EXPECT_THAT(rig.Influences(), ElementsAre(Influence(0, 1.0f)));
  EXPECT_THAT(rig.host.LinesThatBegin(">>> Unable"),
              ElementsAre(">>> Unable to Find BoneID for Arm", ">>> Unable to Find BoneID for rootBone"));
}

}  // namespace
