// SPDX-License-Identifier: MIT
//
// Skeletons of glTF files: where nodes stand, which of them are bones, and where skins were bound.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <numbers>

#include "scene/math/nearest_rotation.h"
#include "support/load_gltf.h"

namespace {

using support::AddSkin;
using support::ChildNames;
using support::GltfFile;
using support::kSquare;
using support::PointsOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using Json = GltfFile::Json;
using Loaded = support::LoadedGltf;

Json Square(GltfFile& file) { return {{"attributes", {{"POSITION", file.Points(kSquare)}}}}; }

/// A node with a square whose points follow the joints of `skin`, each the one of its number.
Json Worn(GltfFile& file, const char* name, size_t skin, const std::vector<uint8_t>& joints) {
  return {{"name", name},
          {"skin", skin},
          {"mesh", file.Mesh({{"attributes", file.Held({{"POSITION", file.Points(kSquare)}}, joints)}})}};
}

bool IsTold(const Loaded& loaded, const char* remark) {
  return testing::Value(loaded.scene->GetRemarks(), Contains(HasSubstr(remark)));
}

TEST(GltfNodes, StandWhereTheirTransformsPutThem) {
  const double half = std::sqrt(0.5);
  const std::pair<Json, std::vector<double>> cases[] = {
      {{{"rotation", {half, 0, 0, half}}}, {100, 0, 0, 0, 0, 100, 0, -100, 0}},
      {{{"rotation", {0, half, 0, half}}}, {0, 0, -100, 0, 100, 0, 100, 0, 0}},
      {{{"rotation", {0.5, 0.5, 0.5, 0.5}}}, {0, 100, 0, 0, 0, 100, 100, 0, 0}},
      // Scaled first, then turned, then moved.
      {{{"rotation", {0, 0, half, half}}, {"scale", {2, 3, 4}}, {"translation", {5, 6, 7}}},
       {500, 800, 700, 200, 600, 700, 500, 600, 1100}},
      {{{"matrix", {0, 2, 0, 0, -3, 0, 0, 0, 0, 0, 4, 0, 5, 6, 7, 1}}},
       {500, 800, 700, 200, 600, 700, 500, 600, 1100}}};
  for (const auto& [transform, expected] : cases) {
    GltfFile file;
    Json node = transform;
    node.update(
        {{"name", "m"},
         {"mesh", file.Mesh({{"attributes", {{"POSITION", file.Points({1, 0, 0, 0, 1, 0, 0, 0, 1})}}}})}});
    file.Top(node);
    EXPECT_THAT(PointsOf(Loaded(file).Mesh("m")), testing::Pointwise(testing::DoubleNear(1e-3), expected))
        << transform;
  }
}

TEST(GltfNodes, ThatAreShearedBecomeBonesAsOfFbxFilesThatAreMadeRigid) {
  GltfFile file;
  const size_t mesh = file.Mesh(
      {{"attributes", file.Held({{"POSITION", file.Points({0, 0, 0, 1, 0, 0, 0, 1, 0})}}, {1, 1, 1})}});
  const size_t tip = file.Add("nodes", {{"name", "tip"}, {"rotation", {0, 0, 0.6, 0.8}}});
  const size_t root = file.Top({{"name", "root"}, {"scale", {1, 2, 1}}, {"children", {tip}}});
  file.Top({{"name", "m"}, {"mesh", mesh}, {"skin", AddSkin(file, {root, tip}, {})}});
  const Loaded loaded(file);
  const scene::KFbxPose& pose = *loaded.scene->GetPose(0);
  const scene::KFbxXMatrix& bound = pose.GetMatrix(pose.Find(&loaded.Node("tip")));
  const double degrees = 2 * std::acos(0.8) * 180 / std::numbers::pi;
  const scene::KFbxXMatrix sheared =
      scene::KFbxXMatrix::Scaling({1, 2, 1}) * scene::KFbxXMatrix::Rotation({0, 0, degrees});
  const scene::KFbxXMatrix nearest = scene::NearestRotationIfSheared(sheared);
  for (size_t i = 0; i < 12; ++i) EXPECT_NEAR(bound.At(i), nearest.At(i), 1e-6) << i;
}

TEST(GltfNodes, OfTheSceneThatIsShownAreReadWithTheirSkeletons) {
  GltfFile file;
  const size_t hip = file.Add("nodes", {{"name", "hip"}});
  const size_t armature = file.Add("nodes", {{"name", "armature"}, {"children", {hip}}});
  file.Top({{"name", "other"}, {"mesh", file.Mesh(Square(file))}});
  const size_t shown = file.Add("nodes", Worn(file, "body", AddSkin(file, {hip}, {{0, 0, 0}}), {0, 0, 0, 0}));
  file.root["scenes"].push_back({{"nodes", {shown}}});
  file.root["scene"] = 1;
  EXPECT_EQ(ChildNames(*Loaded(file).scene->GetRootNode()), "hip body")
      << "the skeleton stands in no scene, and the other mesh in another";
  file.root["scenes"][1]["nodes"].push_back(armature);
  EXPECT_EQ(ChildNames(*Loaded(file).scene->GetRootNode()), "hip body");
}

TEST(GltfNodes, HaveNamesOfTheirOwn) {
  GltfFile file;
  const size_t square = file.Mesh(Square(file)), named = file.Mesh(Square(file));
  file.root["meshes"][named]["name"] = "Cube";
  for (const char* name : {"a", "a", "a.001", "a", "b", "b.001", "b", "c.1", "c.1"})
    file.Top({{"name", name}, {"mesh", square}});
  file.Top({{"mesh", named}});
  file.Top({{"name", "hat"}, {"mesh", named}});
  file.Top({{"name", "pack"}, {"children", {file.Add("nodes", {{"mesh", square}})}}});
  file.Top({{"mesh", square}});
  EXPECT_EQ(ChildNames(*Loaded(file).scene->GetRootNode()),
            "a a.001 a.002 a.003 b b.001 b.002 c.1 c.1.001 Cube hat pack Mesh_0");
}

/// Whether a skeleton of a hip, a knee one above it and perhaps more joints is taken for posed.
bool IsPosed(const Json& knee, const std::vector<Json>& more = {},
             const std::vector<float>& otherMatrix = {}) {
  GltfFile file;
  Json moved = {{"name", "knee"}, {"translation", {0, 1, 0}}};
  moved.update(knee);
  std::vector<size_t> joints{file.Top({{"name", "hip"}}), file.Add("nodes", moved)};
  file.root["nodes"][0]["children"] = {joints[1]};
  for (const Json& node : more) joints.push_back(file.Top(node));
  std::vector<std::vector<float>> moves{{0, 0, 0}, {0, -1, 0}};
  moves.resize(joints.size(), {0, 0, 0});
  const size_t skin = AddSkin(file, joints, moves);
  const Json& matrices = file.root["bufferViews"].back();
  const size_t last = matrices["byteOffset"].get<size_t>() + 64 * (joints.size() - 1);
  if (!otherMatrix.empty()) std::memcpy(&file.data[last], otherMatrix.data(), 64);
  file.Top(Worn(file, "m", skin, {0, 1, 1, static_cast<uint8_t>(joints.size() - 1)}));
  return IsTold(Loaded(file), "is posed");
}

TEST(GltfSkins, ArePosedWhereAnyBoneHasLeftItsPlace) {
  EXPECT_FALSE(IsPosed(Json::object()));
  EXPECT_FALSE(IsPosed({{"translation", {0, 1.0005, 0}}})) << "nobody sees that";
  EXPECT_TRUE(IsPosed({{"translation", {0, 1.05, 0}}}));
  EXPECT_TRUE(IsPosed({{"rotation", {0.1, 0, 0, 0.995}}}));
  EXPECT_TRUE(IsPosed({{"scale", {1, 1.1, 1}}}));
  const Json aside = {{"name", "joint"}, {"translation", {3, 0, 0}}};
  EXPECT_TRUE(IsPosed(Json::object(), {aside}));
  EXPECT_FALSE(IsPosed(Json::object(), {aside}, std::vector<float>(16))) << "a matrix of zeros says nothing";
  Json neutral = aside;
  neutral["name"] = "neutral_bone";
  EXPECT_FALSE(IsPosed(Json::object(), {neutral})) << "which is no bone";
}

TEST(GltfSkins, AreBoundByTheJointThatIsKnownBest) {
  GltfFile file;
  const size_t spine = file.Add("nodes", {{"name", "spine"}, {"translation", {0, 1, 0}}});
  const size_t hip = file.Add("nodes", {{"name", "hip"}, {"translation", {0, 1, 0}}, {"children", {spine}}});
  // Which was bound at z = -1.
  const size_t tail = file.Add("nodes", {{"name", "tail"}, {"translation", {0, 1, -1.3}}});
  // Without matrices: it says nothing of where the bones stood, although it comes first.
  const Json skirt = Worn(file, "skirt", AddSkin(file, {spine, tail}, {}), {0, 0, 1, 1});
  file.Top(skirt);
  file.Top({{"name", "rig"}, {"children", {hip, tail}}});
  file.Top(Worn(file, "body", AddSkin(file, {hip, spine}, {{0, -1, 0}, {0, -2, 0}}), {0, 0, 1, 1}));
  // Far away, so that the place of the mesh says nothing.
  Json fur = Worn(file, "fur", AddSkin(file, {tail, spine}, {{0, -1, 1}, {0, -2, 0}}), {0, 0, 1, 1});
  fur["translation"] = {90, 0, 0};
  file.Top(fur);
  const Loaded loaded(file);
  EXPECT_EQ(PointsOf(loaded.Mesh("fur"))[2], 0.0) << "the spine, which the other skin has placed";
  EXPECT_EQ(loaded.BoundAt("tail")[2], -100.0);
  EXPECT_EQ(loaded.BoundAt("spine")[1], 200.0);
}

TEST(GltfSkins, DoWithoutMatricesThatAreNone) {
  GltfFile file;
  const size_t knee = file.Add("nodes", {{"name", "knee"}, {"translation", {0, 3, 0}}});
  const size_t hip = file.Top({{"name", "hip"}, {"children", {knee}}});
  const size_t skin = AddSkin(file, {hip, knee}, {{0, 0, 0}, {0, -2, 0}});
  std::memset(&file.data[file.root["bufferViews"].back()["byteOffset"].get<size_t>()], 0, 64);
  file.Top(Worn(file, "m", skin, {1, 1, 1, 1}));
  const Loaded loaded(file);
  EXPECT_EQ(PointsOf(loaded.Mesh("m"))[1], 100.0) << "the knee stands one above where it was bound";
  EXPECT_EQ(loaded.BoundAt("knee")[1], 300.0);
  EXPECT_EQ(loaded.BoundAt("hip")[1], 0.0);
}

/// Names at the top of a file with a second skeleton, a control with an end, after `change`. It holds nothing by itself.
std::string TopsWith(
    const std::function<void(GltfFile& file, size_t body, size_t control, size_t end)>& change) {
  GltfFile file;
  const size_t body = file.Top({{"name", "body"}});
  const size_t end = file.Add("nodes", {{"name", "end"}});
  const size_t control = file.Top({{"name", "control"}, {"children", {end}}});
  file.Top(Worn(file, "m", AddSkin(file, {body, control, end}, {}), {0, 0, 0, 0}));
  change(file, body, control, end);
  return ChildNames(*Loaded(file).scene->GetRootNode());
}

TEST(GltfSkeletons, BehindTheFirstAreLeftOutWhereTheyHoldNothing) {
  EXPECT_EQ(TopsWith([](GltfFile&, size_t, size_t, size_t) {}), "body m");
  const auto hold = [](const char* set, uint8_t joint) {
    return [=](GltfFile& file, size_t, size_t, size_t) {
      Json& attributes = file.root["meshes"][0]["primitives"][0]["attributes"];
      const Json held = file.Held({}, {joint, joint, joint, joint});
      for (const char* kind : {"JOINTS_", "WEIGHTS_"})
        attributes[kind + std::string(set)] = held[kind + std::string("0")];
    };
  };
  EXPECT_EQ(TopsWith(hold("1", 2)), "root m") << "points hang on its end by their second four";
  EXPECT_EQ(TopsWith(hold("0", 1)), "root m") << "the first holds nothing itself, but comes first";
  EXPECT_EQ(TopsWith([](GltfFile& file, size_t, size_t, size_t end) {
              const size_t hat = file.Add("nodes", {{"name", "hat"}, {"mesh", file.Mesh(Square(file))}});
              file.root["nodes"][end]["children"] = {file.Add("nodes", {{"children", {hat}}})};
            }),
            "root hat m");
  EXPECT_EQ(TopsWith([](GltfFile& file, size_t, size_t, size_t end) {
              file.root["extensions"]["VRMC_vrm"]["humanoid"]["humanBones"]["head"]["node"] = end;
            }),
            "root m")
      << "an avatar has it for its head";
}

TEST(GltfSkeletons, HaveTheBonesThatAvatarsNameAndHoldWhatHangsBelowThem) {
  GltfFile file;
  const size_t hat =
      file.Add("nodes", {{"name", "hat"}, {"mesh", file.Mesh(Square(file))}, {"translation", {0, 0, 1}}});
  const size_t group = file.Add("nodes", {{"name", "group"}, {"children", {hat}}});
  // No joint of any skin.
  const size_t eye = file.Add("nodes", {{"name", "eye"}, {"children", {group}}, {"translation", {0, 1, 0}}});
  const size_t twig = file.Add("nodes", {{"name", "twig"}});
  // Called like the joint of points without weights, but with a joint below.
  const size_t branch = file.Add("nodes", {{"name", "neutral_bone"}, {"children", {twig}}});
  const size_t head = file.Top({{"name", "head"}, {"children", {eye, branch}}});
  file.Top(Worn(file, "m", AddSkin(file, {head, branch, twig}, {}), {0, 1, 2, 0}));
  file.root["extensions"]["VRM"] = {
      {"humanoid",
       {{"humanBones",
         {{{"bone", "leftEye"}, {"node", eye}}, {{"bone", "leftThumbProximal"}, {"node", twig}}}}}}};
  const Loaded loaded(file);
  EXPECT_EQ(ChildNames(loaded.Node("head")), "eye neutral_bone");
  EXPECT_EQ(loaded.Node("eye").GetHumanBone(), "leftEye");
  EXPECT_EQ(loaded.Node("twig").GetHumanBone(), "leftThumbMetacarpal") << "as version 1.0 calls it";
  const scene::KFbxCluster& held = *loaded.Mesh("hat").GetSkin(0)->GetCluster(0);
  EXPECT_EQ(held.GetLink(), &loaded.Node("eye"));
  // The avatar looked along -Z and was turned round.
  EXPECT_THAT(PointsOf(loaded.Mesh("hat")),
              testing::Pointwise(testing::DoubleNear(1e-3),
                                 {0., 100., -100., -100., 100., -100., 0., 200., -100., -100., 200., -100.}));
}

TEST(GltfRemarks, TellTheHeightOfAllMeshesWhereTheyStand) {
  const auto heightOf = [](double scale) {
    GltfFile file;
    // A beam that is turned up: it begins one metre high and is five long. The square hangs down by one.
    const Json beam = {{"attributes", {{"POSITION", file.Points({0, 0, 0, 5, 0, 0, 0, 0, 0.1f})}}}};
    const Json turned = {{"mesh", file.Mesh(beam)}, {"rotation", {0, 0, 1, 1}}, {"translation", {0, 1, 0}}};
    const Json hung = {{"mesh", file.Mesh(Square(file))}, {"translation", {0, -1, 0}}};
    const size_t first = file.Add("nodes", turned), second = file.Add("nodes", hung);
    file.Top({{"children", {first, second}}, {"scale", {scale, scale, scale}}});
    return Loaded(file).scene->GetRemarks().at(0);
  };
  EXPECT_THAT(heightOf(1), testing::EndsWith(", so it is 700 cm high"));
  EXPECT_THAT(heightOf(0.0078), testing::EndsWith(", so it is 5.5 cm high"));
  EXPECT_THAT(heightOf(2.5), testing::EndsWith(", so it is 17.5 m high"));
}

}  // namespace
