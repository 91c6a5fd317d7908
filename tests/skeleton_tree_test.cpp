// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "skeleton/bind_pose.h"
#include "skeleton/csf_writer.h"
#include "skeleton/extract_bones.h"
#include "support/character.h"
#include "support/test_host.h"

namespace {

using namespace std::string_literals;
using support::At;
using support::Character;
using support::Scaled;
using support::TestHost;
using support::Translation;
using support::Turned;
using testing::FloatNear;
using testing::Pointwise;

constexpr float kHalfTurnSine = 0.70710678f;

MATCHER_P3(IsAt, x, y, z, "") {
  return testing::ExplainMatchResult(
      Pointwise(FloatNear(1e-5f), {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)}), arg,
      result_listener);
}
MATCHER_P4(IsTurnedBy, x, y, z, w, "") {
  return testing::ExplainMatchResult(
      Pointwise(FloatNear(1e-5f),
                {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z), static_cast<float>(w)}),
      arg, result_listener);
}

/// The bones that a conversion writes of `model`, which has no mesh.
std::vector<support::CsfBone> BonesOf(const Character& model, const std::string& name = "model.fbx") {
  TestHost host;
  EXPECT_EQ(host.Convert(model.Text(), name), ts3d::ConversionResult::NoMesh);
  const support::Package package = host.ReadPackage(name);
  EXPECT_EQ(package.Names(), "skeleton.csf " + name.substr(0, name.size() - 3) + "xfg");
  return support::ReadCsf(package["skeleton.csf"]);
}

TEST(SkeletonFile, HoldsOneBoneAtTheOriginWhenTheModelHasNone) {
  TestHost host;
  Character model;
  model.Triangle("Body");
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  const std::string zero(4, '\0'), one = "\0\0\x80\x3f"s;
  EXPECT_EQ(host.ReadPackage()["skeleton.csf"],
            "CSF\0\x84\x03\0\0\1\0\0\0\x0b\0\0\0dummy_bone\0"s + zero + zero + zero + zero + zero + zero +
                one + zero + zero + zero + zero + zero + zero + one + "\xff\xff\xff\xff"s + zero);
  EXPECT_EQ(host.Told(">>> This is NOT a rigged model as it has no skeleton!"), 1u);
}

TEST(SkeletonFile, HoldsTheTreeInPreOrder) {
  Character model;
  const auto hip = model.Bone("hip"), spine = model.Bone("spine", hip);
  model.Bone("", spine);
  model.Bone("ne:ck", spine);
  model.Bone("leg", hip);
  model.Mesh("Empty", {}, {});
  const auto bones = BonesOf(model);
  std::string tree;
  for (const auto& bone : bones) {
    tree += bone.name + " " + std::to_string(bone.parent) + ":";
    for (const int32_t child : bone.children) tree += " " + std::to_string(child);
    tree += "\n";
  }
  EXPECT_EQ(tree, "hip -1: 1 4\nspine 0: 2 3\n 1:\nnck 1:\nleg 0:\n");
}

TEST(Bones, CarryTheInverseOfTheirWorldTransform) {
  Character model;
  const auto root = model.Bone("root", 0, {At(10, 0, 0), Turned(0, 0, 90)});
  const auto tip = model.Bone("tip", root, {At(5, 0, 0)});
  model.Bone("end", tip, {Turned(90, 90, 90)});
  const auto bones = BonesOf(model);
  EXPECT_THAT(bones[2].rotation, IsTurnedBy(0, kHalfTurnSine, 0, -kHalfTurnSine));
  EXPECT_THAT(bones[0].translation, IsAt(10, 0, 0));
  EXPECT_THAT(bones[0].rotation, IsTurnedBy(0, 0, kHalfTurnSine, -kHalfTurnSine));
  EXPECT_THAT(bones[0].spaceTranslation, IsAt(0, 10, 0));
  EXPECT_THAT(bones[0].spaceRotation, IsTurnedBy(0, 0, -kHalfTurnSine, -kHalfTurnSine));
  EXPECT_THAT(bones[1].translation, IsAt(5, 0, 0));
  EXPECT_THAT(bones[1].rotation, IsTurnedBy(0, 0, 0, -1));
  EXPECT_THAT(bones[1].spaceTranslation, IsAt(-5, 10, 0));
  EXPECT_THAT(bones[1].spaceRotation, IsTurnedBy(0, 0, -kHalfTurnSine, -kHalfTurnSine));
}

TEST(Bones, TakePlaceAndScaleFromTheBindPoseOrTheRootBone) {
  Character model;
  const auto root = model.Bone("root", model.Null("group"), {At(1, 2, 3), Scaled(2, 2, 2)});
  const auto tip = model.Bone("tip", root, {At(0, 1, 0)});
  const auto plain = BonesOf(model);
  EXPECT_THAT(plain[0].translation, IsAt(2, 4, 6));
  EXPECT_THAT(plain[1].translation, IsAt(0, 2, 0));
  model.BindPose({{tip, {3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 3, 0, 1, 6, 0, 1}},
                  {root, {3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 3, 0, 1, 0, 0, 1}}});
  const auto bound = BonesOf(model);
  EXPECT_THAT(bound[0].translation, IsAt(3, 0, 0));
  EXPECT_THAT(bound[1].translation, IsAt(0, 6, 0));
}

TEST(Bones, OfAnActorStandUpAroundTheRootBone) {
  Character model;
  const auto root = model.Bone("root", 0, {At(0, 10, 5)});
  model.Bone("tip", root, {At(0, 1, 0)});
  for (const char* name : {"plain.fbx", "Actor (Male).fbx"}) {
    const bool isActor = std::string_view(name) != "plain.fbx";
    const auto bones = BonesOf(model, name);
    EXPECT_THAT(bones[0].translation, IsAt(0, 10, 5)) << name;
    EXPECT_THAT(bones[0].rotation,
                IsTurnedBy(isActor ? kHalfTurnSine : 0, 0, 0, isActor ? -kHalfTurnSine : -1));
    EXPECT_THAT(bones[1].translation, IsAt(0, 1, 0)) << name;
    // The tip stands at y 11, or above the root at z 6.
    EXPECT_THAT(bones[1].spaceTranslation, isActor ? testing::Matcher<support::Floats3>(IsAt(0, -6, 10))
                                                   : testing::Matcher<support::Floats3>(IsAt(0, -11, -5)));
  }
}

TEST(Bones, OfAnActorLieAsTheyAreWhenTheBindPoseLacksTheRootBone) {
  Character model;
  const auto root = model.Bone("root", 0, {At(0, 10, 5)}), tip = model.Bone("tip", root);
  model.BindPose({{tip, Translation(0, 11, 5)}});
  EXPECT_THAT(BonesOf(model, "Actor (Male).fbx")[0].rotation, IsTurnedBy(0, 0, 0, -1));
}

TEST(Bones, WithoutBindDataKeepTheirLocalTransformAndTheirChildrenTheWorldOne) {
  Character model;
  const auto root = model.Bone("root"), middle = model.Bone("middle", root, {At(0, 7, 0)});
  const auto tip = model.Bone("tip", middle, {At(0, 1, 0)});
  model.BindPose({{root, Translation(0, 1, 0)}, {tip, Translation(0, 9, 0)}});
  const auto bones = BonesOf(model);
  EXPECT_THAT(bones[0].translation, IsAt(0, 1, 0));
  EXPECT_THAT(bones[1].translation, IsAt(0, 7, 0));
  EXPECT_THAT(bones[2].translation, IsAt(0, 9, 0));
}

TEST(Bones, WithoutScaleStandWhereTheyStandInTheWorld) {
  Character model;
  const auto root = model.Bone("root", model.Null("group"), {At(1, 2, 3), Scaled(100, 100, 100)});
  const auto spine = model.Bone("spine", root, {At(0, 1, 0), Turned(0, 0, 90)});
  model.Bone("neck", model.Null("between", spine), {At(0.5, 0, 0)});  // in no pose
  model.BindPose({{root, {100, 0, 0, 0, 0, 100, 0, 0, 0, 0, 100, 0, 1, 2, 3, 1}},
                  {spine, {0, 100, 0, 0, -100, 0, 0, 0, 0, 0, 100, 0, 1, 112, 3, 1}}});
  TestHost host;
  host.job.settings.repairs.rigidBones = true;
  EXPECT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::NoMesh);
  const auto bones = support::ReadCsf(host.ReadPackage()["skeleton.csf"]);
  EXPECT_THAT(bones[0].translation, IsAt(1, 2, 3));
  EXPECT_THAT(bones[1].translation, IsAt(0, 110, 0));
  EXPECT_THAT(bones[2].translation, IsAt(50, 0, 0)) << "goes along with the bind pose of its parent";
  EXPECT_THAT(bones[2].spaceTranslation, IsAt(-162, 1, -3));
}

struct PoseSpec {
  bool isBindPose;
  std::vector<int> nodes;
};

/// A scene of three nodes and some poses.
struct PosedScene {
  explicit PosedScene(const std::vector<PoseSpec>& specs) {
    for (int i = 0; i < 3; ++i) nodes.push_back(&scene.Create<scene::KFbxNode>("node"));
    for (const PoseSpec& spec : specs) {
      auto& pose = scene.Create<scene::KFbxPose>("pose", spec.isBindPose);
      for (const int node : spec.nodes) pose.Add(*nodes[static_cast<size_t>(node)], {}, false);
      scene.AddPose(pose);
    }
    ChooseBindPose(scene, skeleton);
  }
  int Chosen() const {
    for (int i = 0; i < scene.GetPoseCount(); ++i) {
      if (scene.GetPose(i) == skeleton.bindPose) return i;
    }
    return -1;
  }
  int IndexOf(size_t node) { return BindPoseIndex(nodes[node], scene, skeleton); }

  scene::KFbxScene scene{"scene"};
  std::vector<scene::KFbxNode*> nodes;
  ts3d::SkeletonState skeleton;
};

TEST(BindPose, IsTheFirstWithTheMostNodes) {
  struct {
    std::vector<PoseSpec> poses;
    int chosen;
    bool ambiguous;
  } const cases[] = {{{}, -1, false},
                     {{{false, {0, 1, 2}}, {true, {0}}}, 1, false},
                     {{{true, {0}}, {true, {1, 2}}}, 1, false},
                     {{{true, {0, 1}}, {true, {1, 2}}}, 0, true},
                     {{{true, {0}}, {true, {1}}, {true, {0, 1}}}, 2, false},
                     {{{true, {0, 1}}, {false, {1, 2}}}, 0, false}};
  for (size_t i = 0; i < std::size(cases); ++i) {
    const PosedScene scene(cases[i].poses);
    EXPECT_EQ(scene.Chosen(), cases[i].chosen) << "case " << i;
    EXPECT_EQ(scene.skeleton.bindPoseAmbiguous, cases[i].ambiguous) << "case " << i;
  }
}

TEST(Bones, TakeTheirOwnBindMatrixBeforeTheParentsMovesOnToAnotherPose) {
  Character model;
  const auto root = model.Bone("root"), tip = model.Bone("tip", root), other = model.Node("other");
  model.BindPose({{tip, Translation(5, 0, 0)}, {other, Translation(9, 0, 0)}});
  model.BindPose({{root, Translation(1, 0, 0)}, {other, Translation(9, 0, 0)}});
  EXPECT_THAT(BonesOf(model)[1].translation, IsAt(4, 0, 0));
}

TEST(BindPose, MovesOnToAnotherForAMissingNodeOnlyWhenItWasAmbiguous) {
  PosedScene clear({{true, {0, 1}}, {true, {2}}});
  EXPECT_EQ(clear.IndexOf(1), 1);
  EXPECT_EQ(clear.IndexOf(2), -1);
  EXPECT_EQ(clear.Chosen(), 0);
  PosedScene ambiguous({{true, {0, 1}}, {false, {2}}, {true, {1, 2}}});
  EXPECT_EQ(ambiguous.IndexOf(1), 1);
  EXPECT_EQ(ambiguous.Chosen(), 0);
  EXPECT_EQ(ambiguous.IndexOf(2), 1);
  EXPECT_EQ(ambiguous.Chosen(), 2);
  EXPECT_EQ(ambiguous.IndexOf(0), 0);
  EXPECT_EQ(PosedScene({}).IndexOf(0), -1);
}

}  // namespace
