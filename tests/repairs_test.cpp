// SPDX-License-Identifier: MIT
//
// What a conversion puts right on request.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/character.h"
#include "support/runtime_actor.h"
#include "support/test_host.h"
#include "support/tool.h"

namespace {

using support::At;
using support::Character;
using support::CsfBone;
using support::Doubles;
using support::Identity;
using support::Scaled;
using support::TestHost;
using support::Translation;
using support::Turned;
using testing::ElementsAre;
using testing::FloatNear;
using testing::Pair;
using testing::Pointwise;
using Repairs = ts3d::RepairSettings;

MATCHER_P3(IsAt, x, y, z, "") {
  return testing::ExplainMatchResult(
      Pointwise(FloatNear(1e-4f), {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)}), arg,
      result_listener);
}

/// Gives the mesh full weight on `bone`, bound with both at these places.
void Bind(Character& model, Character::MeshNode& mesh, Character::Id bone, const support::Matrix16& boneAt) {
  support::FbxRecord& cluster = model.Weights(mesh, bone, {0, 1, 2}, {1, 1, 1});
  cluster.Add(Doubles("Transform", Translation(-boneAt[12], -boneAt[13], -boneAt[14])));
  cluster.Add(Doubles("TransformLink", boneAt));
}

struct Converted {
  Converted(const Character& model, const Repairs& repairs, const std::string& name = "model.fbx")
      : package(Convert(model, repairs, name, host)), bones(support::ReadCsf(package["skeleton.csf"])) {}
  static support::Package Convert(const Character& model, const Repairs& repairs, const std::string& name,
                                  TestHost& host) {
    host.job.settings.repairs = repairs;
    EXPECT_EQ(host.Convert(model.Text(), name), ts3d::ConversionResult::Success);
    return host.ReadPackage(name);
  }
  support::CmfVertex Vertex(const std::string& mesh) const {
    return support::ReadCmf(package[mesh + ".cmf"]).vertices.at(0);
  }

  TestHost host;
  support::Package package;
  std::vector<CsfBone> bones;
};

/// A skin on "root" and "tip", but not on "middle" between them, bound with the tip at (0, 5, 0).
Character PosedOtherwise(bool hasBindPose) {
  Character model;
  const auto root = model.Bone("root", 0, {At(7, 0, 0)}), middle = model.Bone("middle", root, {At(0, 2, 0)});
  const auto tip = model.Bone("tip", middle, {At(0, 3, 0), Turned(0, 0, 45)});
  auto mesh = model.Triangle("Body");
  Bind(model, mesh, root, Identity());
  Bind(model, mesh, tip, Translation(0, 5, 0));
  if (hasBindPose) {
    model.BindPose(
        {{root, Translation(9, 0, 0)}, {middle, Translation(9, 2, 0)}, {tip, Translation(9, 5, 9)}});
    model.BindPose({{mesh.node, Translation(0, 50, 0)}});
  }
  return model;
}

TEST(Repairs, TakeTheBindPoseFromTheSkin) {
  for (const bool hasBindPose : {false, true}) {
    const Character model = PosedOtherwise(hasBindPose);
    const Converted repaired(model, {.bindFromSkin = true});
    EXPECT_THAT(repaired.Vertex("Body").position, IsAt(0, 0, 0));
    EXPECT_THAT(repaired.bones[1].spaceTranslation, IsAt(0, -2, 0)) << "goes along with the root";
    EXPECT_THAT(repaired.bones[2].spaceTranslation, IsAt(0, -5, 0));
    EXPECT_THAT(repaired.host.LinesThatBegin("Missing Bind"), ElementsAre());
    support::CheckInRuntime(repaired.package);
  }
}

TEST(Repairs, FindBonesInAndBelowGroupsOfNoType) {
  Character model;
  const auto root = model.Bone("root", model.Node("group", 0, {At(1, 0, 0)}), {At(0, 1, 0)});
  const auto tip = model.Bone("tip", model.Node("inner", root, {At(0, 0, 4)}), {At(0, 2, 0)});
  auto mesh = model.Triangle("Body");
  Bind(model, mesh, tip, Translation(1, 3, 4));
  EXPECT_EQ(Converted(model, {}).bones[0].name, "dummy_bone");
  const Converted open(model, {.openGroups = true});
  EXPECT_THAT(open.bones[0].translation, IsAt(1, 1, 0));
  EXPECT_THAT(open.bones[1].translation, IsAt(0, 2, 4));
  EXPECT_THAT(open.Vertex("Body").influences, ElementsAre(Pair(1, 1.0f)));
  model.BindPose({{root, Translation(1, 1, 0)}, {tip, Translation(1, 3, 4)}, {mesh.node, Identity()}});
  EXPECT_THAT(Converted(model, {.openGroups = true}).bones[1].translation, IsAt(0, 2, 4));
}

TEST(Repairs, JoinSkeletonsOfTheSameNamesBelowANewRoot) {
  Character model;
  std::vector<Character::PoseEntry> pose;
  for (const double x : {10.0, 20.0}) {
    const auto root = model.Bone("Root", model.Null("armature"), {At(x, 0, 0), Scaled(2, 2, 2)});
    const auto tip = model.Bone("tip", root, {At(0, 3, 0)});
    auto mesh = model.Triangle(x < 15 ? "A" : "B");
    Bind(model, mesh, tip, {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, x, 6, 0, 1});
    pose.insert(pose.end(), {{root, {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, x, 0, 0, 1}},
                             {tip, {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, x, 6, 0, 1}},
                             {mesh.node, Identity()}});
  }
  model.BindPose(pose);
  EXPECT_EQ(Converted(model, {}).bones.size(), 2u);
  for (const char* name : {"model.fbx", "Actor (Male).fbx"}) {
    const Converted joined(model, {.joinRoots = true}, name);
    ASSERT_EQ(joined.bones.size(), 5u);
    EXPECT_EQ(joined.bones[0].name, "root2");
    EXPECT_THAT(joined.bones[3].translation, IsAt(20, 0, 0));
    EXPECT_THAT(joined.bones[4].translation, IsAt(0, 6, 0));
    EXPECT_THAT(joined.Vertex("A").influences, ElementsAre(Pair(2, 1.0f)));
    EXPECT_THAT(joined.Vertex("B").influences, ElementsAre(Pair(4, 1.0f)));
    EXPECT_EQ(joined.host.LinesThatBegin(">>> This skeleton does NOT").size(), 0u);
    support::CheckInRuntime(joined.package, {}, 4);
  }
}

TEST(Repairs, AttachMeshesToTheBoneThatTheyHangOn) {
  Character model;
  const auto root = model.Bone("root", 0, {At(0, 1, 0)}), hand = model.Bone("hand", root, {At(0, 4, 0)});
  const auto sword = model.Triangle("Sword", model.Node("grip", hand, {At(1, 0, 0)}));
  model.Mesh("Shield", {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, -3}, 0, {At(0, 0, 8)});
  // Present, bound and posed by the hand.
  EXPECT_THAT(Converted(model, {.attachRigid = true}).Vertex("Sword").position, IsAt(1, 5, 0));
  model.BindPose({{root, Translation(0, 1, 0)}, {hand, Translation(0, 1, 6)}});
  const Converted attached(model, {.attachRigid = true});
  EXPECT_THAT(attached.Vertex("Sword").position, IsAt(1, 1, 6));
  EXPECT_THAT(attached.Vertex("Sword").influences, ElementsAre(Pair(1, 1.0f)));
  EXPECT_THAT(attached.Vertex("Shield").position, IsAt(0, 0, 8));
  EXPECT_THAT(attached.Vertex("Shield").influences, ElementsAre(Pair(0, 1.0f)));
  model.BindPose({{root, Identity()}, {hand, Identity()}, {sword.node, Translation(3, 3, 3)}});
  EXPECT_THAT(Converted(model, {.attachRigid = true}).Vertex("Sword").position, IsAt(3, 3, 3));

  Character loose;
  loose.Mesh("Lamp", {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, -3}, loose.Node("table", 0, {At(0, 2, 0)}),
             {At(1, 0, 0)});
  EXPECT_THAT(Converted(loose, {}).Vertex("Lamp").position, IsAt(0, 0, 0));
  EXPECT_THAT(Converted(loose, {.attachRigid = true}).Vertex("Lamp").position, IsAt(1, 2, 0));
}

class ToolRepairs : public support::Tool {};

TEST_F(ToolRepairs, AreThoseThatTheModelNeedsAndAreTold) {
  Character model;
  const auto group = model.Node("group");
  const auto first = model.Bone("first", 0, {At(0, 1, 0), Scaled(3, 3, 3)});
  auto skin = model.Triangle("Skin");
  Bind(model, skin, model.Bone("hidden", group, {At(5, 0, 0)}), Translation(5, 0, 0));
  Bind(model, skin, first, {3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 3, 0, 0, 9, 0, 1});
  model.Triangle("Hat", model.Bone("head", first, {At(0, 1, 0)}));
  folder_.Write("all.fbx", model.Text());
  EXPECT_EQ(Run("convert all.fbx --repair"), 0);
  for (const char* option : {"--open-groups", "--join-roots", "--bind-from-skin", "--attach-rigid"}) {
    EXPECT_TRUE(Printed(std::string("repaired with ") + option)) << option << errors_;
  }
  support::CheckInRuntime(support::Package(folder_.Path("all.czp")));

  Character scaled;
  auto body = scaled.Triangle("Body");
  Bind(scaled, body, scaled.Bone("root", 0, {At(0, 1, 0), Scaled(3, 3, 3)}),
       {3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 3, 0, 0, 1, 0, 1});
  folder_.Write("scaled.fbx", scaled.Text());
  EXPECT_EQ(Run("convert scaled.fbx --repair"), 0);
  EXPECT_TRUE(
      Printed("repaired with --rigid-bones: without it, bones with weights stand in the wrong place (1)"))
      << errors_;
  const std::string proof = "without repairs vertices move differently from the model, by up to 0.67 of";
  EXPECT_TRUE(Printed(proof)) << errors_;
  EXPECT_EQ(Run("check scaled.fbx"), 1);
  EXPECT_NE(output_.find(proof), std::string::npos) << output_;
  const auto proven = support::Package(folder_.Path("scaled.czp"));
  EXPECT_EQ(Run("convert scaled.fbx --rigid-bones --bind-from-skin"), 0);
  EXPECT_TRUE(proven.Members() == support::Package(folder_.Path("scaled.czp")).Members())
      << "trials leave the model as it is";

  CopySample("scout.fbx");
  ASSERT_EQ(Run("convert scout.fbx"), 0);
  const auto before = support::Package(folder_.Path("scout.czp"));
  ASSERT_EQ(Run("convert scout.fbx --repair"), 0);
  EXPECT_TRUE(Printed("nothing to repair")) << errors_;
  EXPECT_TRUE(before.Members() == support::Package(folder_.Path("scout.czp")).Members());
}

}  // namespace
