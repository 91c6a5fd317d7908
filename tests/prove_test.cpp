// SPDX-License-Identifier: MIT
//
// Whether a package moves as its model does, and what is told when it does not.
#include "prove/prove.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <regex>
#include <utility>

#include "prove/compare.h"
#include "prove/explain.h"
#include "prove/sha256.h"
#include "support/arm.h"
#include "support/json_schemas.h"
#include "support/tool.h"

namespace {

using prove::Verdict;
using support::Arm;
using support::ArmRig;
using support::At;
using support::Character;
using support::FbxRecord;
using support::ModelAndPackage;
using support::Scaled;
using support::Turned;

std::string CodesOf(const prove::Proof& proof) {
  std::string codes;
  for (const ts3d::Finding& finding : proof.findings) codes += (codes.empty() ? "" : " ") + finding.code;
  return codes;
}

TEST(Prove, APackageMovesAsItsModel) {
  const prove::Proof proof = ModelAndPackage(Arm({})).Prove();
  EXPECT_EQ(proof.verdict, Verdict::Proven) << CodesOf(proof);
  EXPECT_LT(proof.worst.error, 1e-6);
  EXPECT_GT(proof.worst.error, 0.0) << "single precision shows";
  EXPECT_EQ(proof.poses.size(), 18u);
  EXPECT_EQ(proof.meshes.size(), 2u) << "one for each material";
  EXPECT_THAT(proof.diagonal, testing::DoubleNear(7.0, 1e-6)) << "6, 3 and 2 along the axes";
}

TEST(Prove, TurnedBonesAtThePoleMoveAsTheModel) {
  // Without a bind pose, bones are taken as they stand and the mesh as it was modelled: here, the same.
  Character model;
  const auto hip = model.Bone("hip", 0, {At(1, 2, 3), Turned(20, 90, 40)});
  const auto knee = model.Bone("knee", hip, {At(0, 2, 0), Turned(10, -89.9999999, 70)});
  auto mesh = model.Mesh("Leg", {1, 2, 3, 4, 5, 6, 0, 2, 5}, {0, 1, -3});
  model.Weights(mesh, hip, {0, 1}, {1, 0.5});
  model.Weights(mesh, knee, {1, 2}, {0.5, 1});
  const prove::Proof proof = ModelAndPackage(model).Prove();
  EXPECT_EQ(proof.verdict, Verdict::Proven) << CodesOf(proof) << proof.worst.error;
}

TEST(Prove, ErrorsOfTheConverterAreFound) {
  const std::pair<const char*, std::function<void(actor::Actor&)>> damages[] = {
      {"wrong-weights",
       [](actor::Actor& a) {
         for (auto& mesh : a.meshes) {
           for (const auto& v : mesh.vertices) {
             auto* const pair = &mesh.influences[v.firstInfluence];
             if (v.influenceCount == 2) std::swap(pair[0].bone, pair[1].bone);
           }
         }
       }},
      {"wrong-weights",
       [](actor::Actor& a) {
         for (auto& mesh : a.meshes) {
           for (auto& v : mesh.vertices) v.influenceCount = 1;
         }
       }},
      {"wrong-place", [](actor::Actor& a) { a.meshes[0].vertices[1].position[1] += 0.001f; }},
      {"wrong-bone", [](actor::Actor& a) { a.skeleton.bones[2].translation[0] += 0.001f; }},
      {"wrong-bone",
       [](actor::Actor& a) {
         a.skeleton.bones[1].boneSpaceRotation = {0.001f, 0, 0, -1};
       }},
      {"other-model", [](actor::Actor& a) { a.meshes[0].faces.pop_back(); }}};
  const ModelAndPackage converted(Arm({}));
  for (const auto& [code, damage] : damages) {
    actor::Actor damaged = converted.actor;
    damage(damaged);
    const prove::Proof proof = prove::Prove(*converted.scene, damaged, {.poses = 8});
    EXPECT_EQ(CodesOf(proof), code);
    EXPECT_EQ(proof.verdict, std::string(code) == "other-model" ? Verdict::NotCompared : Verdict::OurError);
  }
}

TEST(Prove, FaultsOfRigsAreNamed) {
  ArmRig scaled, mirrored, unbound, second, rebound, additive, partial, unweighted, weightless, hidden,
      namesake;
  scaled.upper.push_back(Scaled(2, 2, 2));
  mirrored.upper.push_back(Scaled(-1, 1, 1));
  unbound.isInBindPose = false;
  unbound.lower = {At(3, 1, 0)};
  second.hasSecondRoot = true;
  rebound.boundAt = 0.5;
  additive.mode = "Additive";
  partial.mode = "Total1";
  unweighted.weighsAll = false;
  weightless.firstWeight = 0.0;
  hidden.isInGroup = true;
  namesake.name = "upper";
  const std::pair<const char*, ArmRig> cases[] = {{"scaled-now", scaled},
                                                  {"scaled-now", mirrored},
                                                  {"bone-not-bound", unbound},
                                                  {"second-root", second},
                                                  {"other-bind-pose", rebound},
                                                  {"additive-skin", additive},
                                                  {"unweighted-vertices", unweighted},
                                                  {"bad-weights", weightless},
                                                  {"same-bone-name", namesake},
                                                  {"hidden-bones", hidden}};
  for (const auto& [code, rig] : cases) {
    const prove::Proof proof = ModelAndPackage(Arm(rig)).Prove();
    EXPECT_EQ(CodesOf(proof), code);
    EXPECT_EQ(proof.verdict, Verdict::RigFaults);
    EXPECT_GT(proof.worst.error, prove::kLimit);
  }
  EXPECT_EQ(ModelAndPackage(Arm(partial)).Prove().verdict, Verdict::Proven) << "these add up to 1";
}

TEST(Prove, AScaledRootIsToldAndHidesNothing) {
  Character model;
  const auto root = model.Bone("root", 0, {At(0, 1, 0), Scaled(10, 10, 10)});
  const auto tip = model.Bone("tip", root, {At(0.2, 0, 0)});
  auto mesh = model.Mesh("Body", {0, 0, 0, 2, 0, 0, 4, 1, 0}, {0, 1, -3});
  model.Weights(mesh, root, {0, 1}, {1, 0.5});
  model.Weights(mesh, tip, {1, 2}, {0.5, 1});
  ModelAndPackage converted(model);
  const prove::Proof proof = converted.Prove();
  EXPECT_EQ(CodesOf(proof), "root-scale");
  EXPECT_EQ(proof.verdict, Verdict::RigFaults);
  EXPECT_LE(proof.worst.error, prove::kLimit);
  EXPECT_THAT(proof.findings.at(0).error * proof.diagonal, testing::DoubleNear(9.0, 1e-4))
      << "10 instead of 1";
  converted.actor.skeleton.bones[1].translation[1] += 0.01f;
  EXPECT_EQ(CodesOf(converted.Prove()), "wrong-bone root-scale");
}

TEST(Prove, BonesMadeRigidBelowAnUnevenScaleAreComparedToTheLastBit) {
  Character model;
  const support::FbxRecord shears = support::Property("InheritType", {1});
  const auto root = model.Bone("root", model.Null("armature", 0, {Scaled(1, 1.005, 1)}),
                               {At(0, 1, 0), Turned(5, 5, 5), shears});
  const auto upper = model.Bone("upper", root, {At(2, 0, 0), Turned(20, 80, 40), shears});
  const auto lower = model.Bone("lower", upper, {At(0, 3, 0), Turned(-30, 10, 50), shears});
  auto mesh = model.Mesh("Body", {0, 0, 0, 2, 0, 0, 4, 1, 0}, {0, 1, -3});
  model.Weights(mesh, root, {0}, {1});
  model.Weights(mesh, upper, {1, 2}, {1, 0.5});
  model.Weights(mesh, lower, {2}, {0.5});
  const ModelAndPackage converted(model.Text(), "model.fbx", {.rigidBones = true});
  const prove::Proof proof = converted.Prove();
  EXPECT_EQ(CodesOf(proof), "uneven-scale");
  EXPECT_LT(proof.worst.error, 0.005);
  // The unevenness must not hide what is far smaller.
  for (const size_t bone : {size_t{1}, size_t{2}}) {
    for (const auto rotation : {&actor::Bone::rotation, &actor::Bone::boneSpaceRotation}) {
      actor::Actor damaged = converted.actor;
      (damaged.skeleton.bones[bone].*rotation)[0] += 2e-5f;
      EXPECT_EQ(prove::Prove(*converted.scene, damaged, {.poses = 8}).verdict, Verdict::OurError) << bone;
    }
  }
}

TEST(Prove, WithoutBonesMeshesStandAsTheyDoNow) {
  Character model;
  const auto mesh = model.Mesh("Lamp", {0, 0, 0, 2, 0, 0, 4, 1, 0}, {0, 1, -3}, 0, {At(1, 2, 3)});
  model.BindPose({{mesh.node, support::Translation(7, 0, 0)}});
  EXPECT_EQ(CodesOf(ModelAndPackage(model).Prove()), "no-skeleton");
  const ModelAndPackage attached(model.Text(), "model.fbx", {.attachRigid = true});
  EXPECT_EQ(attached.Prove().verdict, Verdict::Proven);
}

/// A root, a limb of two bones and a mesh that is bound to it: at x = 0, 2 and 5.
struct Limb : Character {
  Id root = Bone("root"), upper, between, lower;
  MeshNode mesh;
  std::vector<PoseEntry> pose;

  /// @param scale  of the upper bone, at all times
  /// @param hub    how far a node below it stands that is no bone
  explicit Limb(std::array<double, 3> scale = {1, 1, 1}, double hub = 0)
      : upper(Bone("upper", root, {At(2, 0, 0), Scaled(scale[0], scale[1], scale[2])})),
        between(hub > 0 ? Null("hub", upper, {At(hub, 0, 0)}) : upper),
        lower(Bone("lower", between, {At(3 - hub, 0, 0)})),
        mesh(Mesh("Limb", {0, 0, 0, 2, 1, 0, 5, 0, 1, 6, 1, 1}, {0, 1, -3, 1, 2, -4})) {
    support::Matrix16 scaled = support::ScaleMatrix(scale[0], scale[1], scale[2]), end = scaled;
    scaled[12] = 2;
    end[12] = 2 + 3 * scale[0];
    Bind(root, {0}, support::Identity());
    Bind(upper, {1}, scaled);
    Bind(lower, {2, 3}, end);
    pose.push_back({mesh.node, support::Identity()});
    if (hub > 0) pose.push_back({between, support::Translation(2 + hub, 0, 0)});
  }
  void Bind(Id bone, std::vector<double> points, const support::Matrix16& link) {
    FbxRecord& cluster = Weights(mesh, bone, points, std::vector<double>(points.size(), 1.0));
    support::Matrix16 toLink = support::ScaleMatrix(1 / link[0], 1 / link[5], 1 / link[10]);
    toLink[12] = -link[12] / link[0];
    cluster.Add(support::Doubles("Transform", toLink));
    cluster.Add(support::Doubles("TransformLink", link));
    pose.push_back({bone, link});
  }
  ModelAndPackage Converted() {
    if (!pose.empty()) BindPose(pose);
    return ModelAndPackage(*this);
  }
};

TEST(Prove, FaultsOfBindPosesAndSkeletonsAreNamed) {
  const auto codesOf = [](Limb limb) { return CodesOf(limb.Converted().Prove()); };
  EXPECT_EQ(codesOf(Limb()), "");
  Limb parentless, hung;
  parentless.pose.erase(parentless.pose.begin() + 1);
  EXPECT_EQ(codesOf(parentless), "parent-not-bound");
  EXPECT_EQ(codesOf(Limb({1, 1, 1}, 1)), "node-between-bones");
  EXPECT_THAT(codesOf(Limb({-1, 1, 1})), testing::EndsWith("mirrored-bone"));
  EXPECT_EQ(codesOf(Limb({1, 2, 1})), "uneven-scale");
  EXPECT_EQ(codesOf(Limb({2, 2, 2})), "scaled-bones");
  hung.Mesh("Hung", {2, 0, 0, 3, 0, 0, 2, 1, 0}, {0, 1, -3}, hung.upper);
  EXPECT_EQ(codesOf(hung), "no-skin");
}

TEST(Prove, PackagesThatStandAsTheirSkinsWereBoundAreSound) {
  ArmRig rebound;
  rebound.boundAt = 0.5;
  const prove::Proof proof =
      ModelAndPackage(Arm(rebound).Text(), "model.fbx", {.bindFromSkin = true}).Prove();
  EXPECT_EQ(CodesOf(proof), "stands-as-bound");
  EXPECT_EQ(proof.verdict, Verdict::Proven);
}

TEST(Prove, MeshesAreFoundAgainWhateverThePackageLeavesOut) {
  Limb limb;
  // A triangle without area, and a mesh of the same name that the last one replaces.
  auto parts = limb.Mesh("Parts", {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0}, {0, 1, -3, 1, 1, -4, 1, 3, -3});
  Character::MaterialNumbers(parts, {0, 0, 1});
  limb.Material(parts);
  limb.Material(parts);
  limb.Weights(parts, limb.root, {0, 1, 2, 3}, {1, 1, 1, 1});
  limb.pose.push_back({parts.node, support::Identity()});
  for (const double height : {7.0, 8.0}) {
    auto twin = limb.Mesh("Twin", {0, height, 0, 1, height, 0, 0, 9, 0}, {0, 1, -3});
    limb.Weights(twin, limb.root, {0, 1, 2}, {1, 1, 1});
    limb.pose.push_back({twin.node, support::Identity()});
  }
  const prove::Proof proof = limb.Converted().Prove();
  EXPECT_EQ(proof.verdict, Verdict::Proven) << CodesOf(proof);
}

TEST(Prove, OurOwnErrorsHideBehindNothing) {
  ArmRig unweighted;
  unweighted.weighsAll = false;
  ModelAndPackage faulty{Arm(unweighted)};
  for (actor::Mesh& mesh : faulty.actor.meshes) {
    for (actor::Vertex& vertex : mesh.vertices) vertex.position[1] += vertex.position[0] == 0 ? 0.5f : 0.0f;
  }
  EXPECT_EQ(CodesOf(faulty.Prove()), "wrong-place") << "of points without weights";
  // Of two influences the weaker one is kept.
  ModelAndPackage weakest{Arm({})};
  for (actor::Mesh& mesh : weakest.actor.meshes) {
    for (const actor::Vertex& vertex : mesh.vertices) {
      actor::Influence* const pair = &mesh.influences[vertex.firstInfluence];
      if (vertex.influenceCount != 2 || pair[0].weight == pair[1].weight) continue;
      std::swap(pair[0].weight, pair[1].weight);
      (pair[0].weight > pair[1].weight ? pair[0] : pair[1]).weight = 1;
      (pair[0].weight > pair[1].weight ? pair[1] : pair[0]).weight = 0;
    }
  }
  const prove::Proof kept = prove::Prove(*weakest.scene, weakest.actor, {.poses = 4, .mostInfluences = 1});
  EXPECT_THAT(CodesOf(kept), testing::HasSubstr("wrong-weights"));
  EXPECT_EQ(kept.verdict, Verdict::OurError);
}

TEST(Prove, ErrorsAreTheSameInAnyNumberOfThreadsAndNeverRounding) {
  const ModelAndPackage converted(Arm({}));
  const actor::Skeleton& skeleton = converted.actor.skeleton;
  const prove::ModelRig rig = prove::ReadModelRig(*converted.scene, skeleton, false);
  const prove::Matches matches = prove::MatchMeshes(*converted.scene, rig, converted.actor);
  const double diagonal = prove::MeasureDiagonal(rig, matches);
  const auto compare = [&](unsigned threads) {
    return prove::Compare(skeleton, rig, matches, prove::MakePoses(skeleton, rig, 7, 9), diagonal, threads);
  };
  prove::Comparison one = compare(1);
  const prove::Comparison three = compare(3);
  EXPECT_EQ(one.turned, three.turned);
  EXPECT_EQ(one.atRest, three.atRest);
  EXPECT_EQ(one.now, three.now);
  one.turned[0][1] = 1e-3f;
  const auto explained =
      prove::Explain(skeleton, rig, matches, prove::FindBoneFacts(skeleton, rig, diagonal), one, 0);
  ASSERT_EQ(explained.causes.size(), 1u);
  EXPECT_EQ(prove::WordsOf(explained.causes[0].cause).code, "unexplained");
}

using ProveTool = support::Tool;

TEST_F(ProveTool, ProvesModelsAndPackages) {
  CopySample("scout.fbx");
  CopySample("sub/scout.fbx");
  EXPECT_EQ(Run("prove --poses 2 ."), 0) << errors_;
  EXPECT_NE(output_.find("the package moves as the model does"), std::string::npos) << output_;
  EXPECT_EQ(Files(), "scout.fbx sub") << "nothing is written";
  Run("convert scout.fbx");
  EXPECT_EQ(Run("prove --json --poses 2 scout.fbx scout.czp"), 0) << errors_;
  folder_.Write("other.fbx", Arm({}).Text());
  EXPECT_EQ(Run("prove --json other.fbx scout.czp"), 2);
  EXPECT_NE(output_.find("other-model"), std::string::npos);
  EXPECT_EQ(Run("prove missing.fbx"), 66);
  // A package with a damaged member tells nothing of what was in it.
  std::string damaged = support::ReadWholeFile(folder_.Path("scout.czp"));
  folder_.Write("capitals.czp", std::regex_replace(damaged, std::regex("skeleton\\.csf"), "skeleton.CSF"));
  EXPECT_EQ(Run("prove --json --poses 2 scout.fbx capitals.czp"), 0) << output_;
  const size_t member = damaged.find("skeleton.csf");
  damaged[member + 40] = static_cast<char>(damaged[member + 40] ^ 0x55);
  folder_.Write("damaged.czp", damaged);
  EXPECT_EQ(Run("prove --json scout.fbx damaged.czp"), 2) << output_;
  EXPECT_NE(output_.find("\"not-compared\""), std::string::npos) << output_ << errors_;
}

TEST_F(ProveTool, CertificatesHoldForTheirFilesAlone) {
  CopySample("scout.fbx");
  EXPECT_EQ(Run("convert --prove scout.fbx"), 0);
  EXPECT_TRUE(Printed("proven: the package moves as the model does")) << errors_;
  EXPECT_EQ(Run("prove --poses 4 --seed 5 scout.fbx scout.czp --certificate c.json"), 0) << errors_;
  const std::string certificate = support::ReadWholeFile(folder_.Path("c.json"));
  support::ExpectMatchesSchemaIfJson(certificate);
  EXPECT_EQ(Run("prove --verify c.json"), 0) << errors_;
  EXPECT_EQ(Run("prove --verify c.json scout.fbx scout.czp"), 0) << errors_;
  folder_.Write("c.json",
                std::regex_replace(certificate, std::regex("\"error\": [0-9.e-]+"), "\"error\": 0.1"));
  EXPECT_EQ(Run("prove --verify c.json"), 1);
  EXPECT_TRUE(Printed("the proof comes out otherwise")) << errors_;
  folder_.Write("c.json", certificate);
  folder_.Write("scout.fbx", Arm({}).Text());
  EXPECT_EQ(Run("prove --verify c.json"), 1);
  EXPECT_TRUE(Printed("is another file")) << errors_;
  for (const char* broken :
       {"{}", "[", "{\"schema\": {\"name\": \"certificate\", \"version\": 1}, \"model\": 1}"}) {
    folder_.Write("c.json", broken);
    EXPECT_EQ(Run("prove --verify c.json"), 2) << broken;
  }
  EXPECT_EQ(Run("prove --certificate c.json scout.fbx"), 64) << "there is no package to certify";
}

TEST_F(ProveTool, InfluencesThatWereToGoAreTheirCost) {
  folder_.Write("arm.fbx", Arm({}).Text());
  EXPECT_EQ(Run("convert --max-influences 2 arm.fbx"), 0);
  EXPECT_TRUE(Printed("vertices keep their 2 strongest influences: this moves no vertex")) << errors_;
  EXPECT_EQ(Run("convert --max-influences 1 arm.fbx"), 0);
  const std::string cost = "1 strongest influences: this moves 4 vertices, by up to 0.";
  EXPECT_TRUE(Printed(cost)) << errors_;
  EXPECT_EQ(Run("check --max-influences 1 arm.fbx"), 0);
  EXPECT_NE(output_.find(cost), std::string::npos) << output_;
  EXPECT_EQ(Run("prove --max-influences 1 arm.fbx arm.czp --certificate c.json"), 1) << output_;
  EXPECT_NE(output_.find("[max-influences]"), std::string::npos) << output_;
  EXPECT_EQ(Run("prove --verify c.json"), 0) << errors_;
  EXPECT_EQ(Run("prove --json arm.fbx arm.czp"), 9) << "nobody says that they were to go";
}

TEST_F(ProveTool, HeatMapsShowTheWorstPoseBesideTheModel) {
  ArmRig rebound;
  rebound.boundAt = 0.5;
  folder_.Write("arm.fbx", Arm(rebound).Text());
  folder_.Write("sound.fbx", Arm({}).Text());
  EXPECT_EQ(Run("convert -q arm.fbx"), 0);
  EXPECT_EQ(Run("preview arm.czp -o arm.png --heat-map"), 0) << errors_;
  EXPECT_THAT(output_, testing::HasSubstr("right the package, whose vertices are off by up to 0.0"))
      << output_;
  EXPECT_EQ(Run("preview arm.czp -o sound.png --heat-map --model sound.fbx"), 0) << errors_;
  const std::string hot = support::ReadWholeFile(folder_.Path("arm.png"));
  EXPECT_THAT(hot, testing::StartsWith("\x89PNG"));
  EXPECT_NE(hot, support::ReadWholeFile(folder_.Path("sound.png")));
  EXPECT_EQ(Run("preview sound.fbx -o sound.png --heat-map"), 0) << errors_;
  EXPECT_THAT(output_, testing::HasSubstr("e-0")) << "rounding alone";
  std::filesystem::remove(folder_.Path("arm.fbx"));
  EXPECT_EQ(Run("preview arm.czp -o arm.png --heat-map"), 66) << "there is no model";
  EXPECT_EQ(Run("preview arm.czp -o arm.png --model sound.fbx"), 64);
}

TEST_F(ProveTool, SamplesAreProvenAndFixturesMoveAsTheirRigsAllow) {
  EXPECT_EQ(Run("prove --poses 16 " TS3D_SAMPLES_FOLDER), 0) << output_ << errors_;
  EXPECT_EQ(Run("prove --poses 16 " TS3D_SOURCE_FOLDER "/tests/fixtures"), 1) << output_ << errors_;
}

TEST(Sha256, IsThatOfTheStandard) {
  // FIPS 180-4 and its example of two blocks.
  const std::pair<std::string, const char*> cases[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {std::string(1000000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}};
  for (const auto& [text, expected] : cases) {
    prove::Sha256 hash;
    for (size_t i = 0; i < text.size(); i += 37) hash.Add(std::string_view(text).substr(i, 37));
    EXPECT_EQ(hash.Finish(), expected);
  }
}

}  // namespace
