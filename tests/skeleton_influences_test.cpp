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

TEST(Influences, AreOrderedByBoneAddedUpAndSumToOne) {
  using Cluster = std::tuple<bool, std::vector<double>, std::vector<double>>;
  struct {
    std::vector<Cluster> clusters;  ///< whether of the arm, points, weights
    float root, arm;
  } const cases[] = {{{{true, {0}, {0.6}}, {false, {0}, {0.2}}}, 0.25f, 0.75f},
                     {{{false, {0, 1, 0}, {0.1, 1.0, 0.2}}, {true, {0}, {0.1}}}, 0.75f, 0.25f},
                     {{{true, {0}, {0.1}}, {false, {0}, {0.1}}, {true, {0}, {0.2}}}, 0.25f, 0.75f},
                     {{{true, {3, -1, 0}, {0.5, 0.5, 0.5}}, {false, {0}, {0.5}}}, 0.5f, 0.5f}};
  for (const auto& [clusters, root, arm] : cases) {
    Rig rig;
    for (const auto& [ofArm, points, weights] : clusters) {
      rig.model.Weights(rig.body, ofArm ? rig.arm : rig.root, points, weights);
    }
    EXPECT_THAT(rig.Influences(), ElementsAre(Influence(0, root), Influence(1, arm)));
  }
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
  for (const auto& [name, weight] :
       {std::pair("a:b:root", 0.3), std::pair("ar@?m", 0.1), std::pair("no:such:Arm", 1.0),
        std::pair("rootBone", 1.0), std::pair("", 1.0)}) {
    rig.model.Weights(rig.body, rig.model.Bone(name, hidden), {0}, {weight});
  }
  EXPECT_THAT(rig.Influences(), ElementsAre(Influence(0, 0.75f), Influence(1, 0.25f)));
  EXPECT_THAT(rig.host.LinesThatBegin(">>> Unable"),
              ElementsAre(">>> Unable to Find BoneID for Arm", ">>> Unable to Find BoneID for rootBone"));
}

}  // namespace
