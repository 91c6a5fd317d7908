// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/character.h"
#include "support/test_host.h"

namespace {

using support::At;
using support::Character;
using support::Doubles;
using support::Identity;
using support::Property;
using support::ScaleMatrix;
using support::TestHost;
using support::Translation;
using testing::ElementsAre;
using testing::FloatNear;
using testing::Pointwise;

/// Where vertex `i` of the mesh "Body" ends up.
support::Floats3 PositionOf(size_t i, TestHost& host, const Character& model,
                            const std::string& name = "model.fbx") {
  EXPECT_EQ(host.Convert(model.Text(), name), ts3d::ConversionResult::Success);
  return support::ReadCmf(host.ReadPackage(name)["Body.cmf"]).vertices.at(i).position;
}

TEST(MeshPosition, IsThatOfTheBindPoseOrItsOwnSpaceWithTheGeometricTransform) {
  Character model;
  const auto mesh = model.Mesh("Body", {1, 0, 0, 2, 0, 0, 0, 1, 0}, {0, 1, -3}, 0,
                               {At(100, 0, 0), Property("GeometricTranslation", {0.0, 0.0, 7.0}),
                                Property("GeometricScaling", {2.0, 1.0, 1.0})});
  TestHost host;
  EXPECT_THAT(PositionOf(0, host, model), ElementsAre(2, 0, 7));
  EXPECT_EQ(host.LinesThatBegin("Missing Bind").size(), 0u);
  const auto root = model.Bone("root");
  EXPECT_THAT(PositionOf(0, host, model), ElementsAre(2, 0, 7));
  EXPECT_THAT(host.LinesThatBegin("Missing Bind"), ElementsAre("Missing Bind Pose Data for Mesh: Body"));
  model.BindPose({{root, Identity()}, {mesh.node, Translation(0, 50, 0)}});
  EXPECT_THAT(PositionOf(0, host, model), ElementsAre(2, 50, 7));
  EXPECT_EQ(host.LinesThatBegin("Missing Bind").size(), 0u);
}

/// A bone that the bind pose raises by 2 with weight 0.5, and one that it enlarges three times with weight
/// 0.25, both on the point (1, 0, 0); the point (0, 1, 0) has no weight.
Character SkinnedWithMode(const char* mode) {
  Character model;
  const auto root = model.Bone("root"), tip = model.Bone("tip", root);
  auto mesh = model.Mesh("Body", {1, 0, 0, 2, 0, 0, 0, 1, 0}, {0, 1, -3});
  for (auto* cluster :
       {&model.Weights(mesh, root, {0, 1}, {0.5, 1}), &model.Weights(mesh, tip, {0}, {0.25})}) {
    if (*mode) cluster->Add({"Mode", {mode}});
    cluster->Add(Doubles("Transform", Identity()));
    cluster->Add(Doubles("TransformLink", Identity()));
  }
  model.BindPose({{root, Translation(0, 2, 0)}, {tip, ScaleMatrix(3, 3, 3)}, {mesh.node, Identity()}});
  return model;
}

TEST(SkinDeformation, BlendsByTheLinkMode) {
  struct {
    const char* mode;
    support::Floats3 position;
  } const cases[] = {// (0.5 (1, 2, 0) + 0.25 (3, 0, 0)) / 0.75
                     {"", {1.6666666f, 1.3333334f, 0}},
                     {"Normalize", {1.6666666f, 1.3333334f, 0}},
                     {"unheard", {1.6666666f, 1.3333334f, 0}},
                     // 0.5 (1, 2, 0) + 0.25 (3, 0, 0) + 0.25 (1, 0, 0)
                     {"Total1", {1.5f, 1, 0}},
                     {"TotalOne", {1.5f, 1, 0}},
                     // Half way to (1, 2, 0), from there a quarter of the way to (3, 3, 0).
                     {"Additive", {1.5f, 1.5f, 0}}};
  for (const auto& [mode, position] : cases) {
    TestHost host;
    const Character model = SkinnedWithMode(mode);
    EXPECT_THAT(PositionOf(0, host, model), Pointwise(FloatNear(1e-5f), position)) << mode;
    EXPECT_THAT(PositionOf(1, host, model), ElementsAre(2, 2, 0)) << mode;
    EXPECT_THAT(PositionOf(2, host, model), ElementsAre(0, 1, 0)) << mode;
  }
}

TEST(SkinDeformation, StartsFromWhereMeshAndBoneWereBound) {
  Character model;
  const auto root = model.Bone("root");
  auto mesh = model.Triangle("Body");
  support::FbxRecord& cluster = model.Weights(mesh, root, {0, 1, 2}, {1, 1, 1});
  // Bound with the bone at y 10 and the mesh 1 above it; posed with the bone at x 5.
  cluster.Add(Doubles("Transform", Translation(0, 1, 0)));
  cluster.Add(Doubles("TransformLink", Translation(0, 10, 0)));
  model.BindPose({{root, Translation(5, 0, 0)}, {mesh.node, Translation(0, 99, 0)}});
  TestHost host;
  EXPECT_THAT(PositionOf(0, host, model), ElementsAre(5, 1, 0));
}

TEST(SkinDeformation, TakesBonesThatTheBindPoseLacksToWhereTheSkeletonHasThem) {
  // Bound at the origin; posed with the root at x 5, now standing elsewhere with the tip 3 above it.
  Character model;
  const auto group = model.Null("group");
  const auto root = model.Bone("root", group, {At(0, 0, 9), support::Turned(0, 0, 90)});
  const auto tip = model.Bone("tip", root, {At(0, 3, 0)});
  auto mesh = model.Triangle("Body");
  support::FbxRecord& cluster = model.Weights(mesh, tip, {0, 1, 2}, {1, 1, 1});
  cluster.Add(Doubles("Transform", Identity()));
  cluster.Add(Doubles("TransformLink", Identity()));
  TestHost host;
  Character lacksTip = model, lacksBones = model;
  lacksTip.BindPose({{root, Translation(5, 0, 0)}, {mesh.node, Identity()}});
  EXPECT_THAT(PositionOf(0, host, lacksTip), ElementsAre(5, 3, 0));
  // The root as it stands now, whatever is above it; its turn takes the tip to x -3.
  lacksBones.BindPose({{group, Translation(7, 0, 0)}, {mesh.node, Identity()}});
  EXPECT_THAT(PositionOf(0, host, lacksBones), Pointwise(FloatNear(1e-5f), {-3.0f, 0.0f, 9.0f}));
  EXPECT_THAT(host.Bones()[1].spaceTranslation, Pointwise(FloatNear(1e-5f), {0.0f, -3.0f, -9.0f}));
}

TEST(ActorMeshes, AreTurnedWithTheSkeleton) {
  Character model;
  const auto root = model.Bone("root");
  const auto mesh = model.Mesh("Body", {0, 3, 1, 1, 0, 0, 0, 1, 0}, {0, 1, -3});
  model.BindPose({{root, Translation(0, 1, 0)}, {mesh.node, Identity()}});
  TestHost host;
  EXPECT_THAT(PositionOf(0, host, model), ElementsAre(0, 3, 1));
  EXPECT_EQ(host.Told("Applied Skeletal Deformation"), 0u);
  // A quarter turn about the root bone: 2 up and 1 forward of it become 1 down and 2 forward.
  EXPECT_THAT(PositionOf(0, host, model, "actor (girl).fbx"),
              Pointwise(FloatNear(1e-5f), {0.0f, 0.0f, 2.0f}));
  EXPECT_EQ(host.Told("Applied Skeletal Deformation"), 1u);
}

}  // namespace
