// SPDX-License-Identifier: MIT
//
// What a check tells of rigs with one fault or a few.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "check/check_rig.h"
#include "support/character.h"
#include "support/temp_folder.h"

namespace {

using support::At;
using support::Character;
using support::Identity;
using support::Property;
using support::ScaleMatrix;
using support::Translation;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Check : public ::testing::Test {
 protected:
  /// Checks `model` and returns "code name, name" for each finding.
  std::vector<std::string> Told(const std::string& model, const std::string& name = "model.fbx",
                                const std::vector<std::string>& excluded = {}) {
    folder_.Write(name, model);
    report_ = ts3d::CheckRig(folder_.Path() + "\\" + name, {excluded});
    std::vector<std::string> told;
    for (const ts3d::Finding& finding : report_.findings) {
      std::string& line = told.emplace_back(finding.code);
      for (size_t i = 0; i < finding.names.size(); ++i) line += (i == 0 ? " " : ", ") + finding.names[i];
    }
    return told;
  }
  std::vector<std::string> Told(const Character& model) { return Told(model.Text()); }

  const std::string& TextOf(const std::string& code) const {
    static const std::string none;
    for (const ts3d::Finding& finding : report_.findings) {
      if (finding.code == code) return finding.text;
    }
    return none;
  }

  support::TempFolder folder_;
  ts3d::RigReport report_;
};

/// Two bones and a bound triangle with all that a mesh needs; nothing to complain of.
struct SoundRig : Character {
  Id root = Bone("root"), tip = Bone("tip", root, {At(0, 5, 0)});
  MeshNode body = Triangle("Body");
  Id material = 0;
  std::vector<PoseEntry> pose{{root, Identity()}, {tip, Translation(0, 5, 0)}, {body.node, Identity()}};

  explicit SoundRig(bool withSkin = true) {
    if (withSkin) Weights(body, root, {0, 1, 2}, {1, 1, 1});
    Finish(body);
  }
  void Finish(const MeshNode& mesh) {
    Coordinates(mesh, {0, 0, 1, 0, 0, 1}, {0, 1, 2});
    material = Material(mesh, "phong", {Property("TransparencyFactor", {1.0})});
  }
  /// A bound triangle on the root, without coordinates and material.
  MeshNode Bound(const std::string& name, Id parent = 0) {
    MeshNode mesh = Triangle(name, parent);
    Weights(mesh, root, {0, 1, 2}, {1, 1, 1});
    pose.push_back({mesh.node, Identity()});
    return mesh;
  }
  MeshNode Further(const std::string& name, Id parent = 0) {
    const MeshNode mesh = Bound(name, parent);
    Finish(mesh);
    return mesh;
  }
  std::string File() {
    BindPose(pose);
    return Text();
  }
};

TEST_F(Check, FindsNothingInASoundRigAndWritesNothing) {
  SoundRig rig;
  rig.Texture(rig.material, "c:\\pictures\\skin.png");
  EXPECT_THAT(Told(rig.File()), IsEmpty());
  ASSERT_EQ(report_.meshes.size(), 1u);
  EXPECT_EQ(report_.meshes[0].vertices, 3u);
  EXPECT_EQ(report_.textures.at(0).tgaName, "skin.tga");
  EXPECT_THAT(report_.members, ElementsAre("skin.tga", "skeleton.csf", "model.xfg", "Body.cmf", "Body.xrf"));
  EXPECT_TRUE(report_.bones.at(0).weighted);
  EXPECT_EQ(report_.bones.at(1).parent, "root");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), 1);
}

TEST_F(Check, TellsWhyAModelCannotBeConverted) {
  Character noMesh;
  noMesh.BindPose({{noMesh.Bone("root"), Identity()}});
  EXPECT_THAT(Told(noMesh), ElementsAre("no-mesh"));
  EXPECT_THAT(Told("no model\n"), ElementsAre("not-loaded"));
  EXPECT_THAT(TextOf("not-loaded"), HasSubstr("not an FBX file"));
  EXPECT_EQ(ts3d::CheckRig("\\nowhere.fbx").findings.at(0).code, "no-file");
  EXPECT_THAT(Told("; FBX 7.5.0 project file\nFBXHeaderExtension: {\nEncryptionType: 1\n}\nObjects: {\n}\n"),
              ElementsAre("password"));
  EXPECT_EQ(report_.Worst(), ts3d::Severity::Fatal);
}

TEST_F(Check, TellsOfBonesThatAreLostOrShareNames) {
  SoundRig rig;
  const auto group = rig.Node("group");
  rig.Bone("hidden2", rig.Bone("hidden1", group));
  rig.Bone("under", rig.Bone("second"));
  for (const auto& [name, parent] : {std::pair("tip", rig.tip), std::pair("", rig.tip),
                                     std::pair("a:b", rig.root), std::pair("c&d", rig.root)}) {
    rig.pose.push_back({rig.Bone(name, parent), Identity()});
  }
  EXPECT_THAT(
      Told(rig.File()),
      UnorderedElementsAre("hidden-bones group", "second-root second", "same-bone-name tip", "unnamed-bone",
                           "bone-name-changed a:b", "xml-bone-name c&d", testing::StartsWith("posed-bones")));
  EXPECT_THAT(TextOf("hidden-bones"), HasSubstr("2 skeleton nodes"));
  Character none;
  none.Triangle("Body");
  EXPECT_THAT(Told(none), testing::Contains("no-skeleton"));
}

TEST_F(Check, ExplainsTheBindPose) {
  SoundRig rig;
  const auto bone = [&](const char* name, const support::Matrix16& matrix, bool isLocal = false) {
    rig.pose.push_back({rig.Bone(name, rig.root), matrix, isLocal});
    return rig.pose.back().node;
  };
  bone("mirrored", ScaleMatrix(-1, 1, 1));
  bone("uneven", ScaleMatrix(1, 1.1, 1));
  bone("nearly", ScaleMatrix(100, 100.5, 100));
  bone("local", Identity(), true);
  const auto unbound = rig.Bone("unbound", rig.root);
  rig.pose.push_back({rig.Bone("child", unbound), Identity()});
  rig.Weights(rig.body, unbound, {0}, {0.5});
  rig.Bone("end", rig.root);
  rig.Node("moved", 0, {At(1, 0, 0)});
  EXPECT_THAT(Told(rig.File()),
              UnorderedElementsAre("mirrored-bone mirrored", "uneven-scale uneven",
                                   "nearly-even-scale nearly", "local-matrix local", "bone-not-bound unbound",
                                   "idle-bone-not-bound end", "parent-not-bound child",
                                   "posed-bones mirrored, uneven, nearly", "unnormalised-weights Body"));
  Character none;
  auto mesh = none.Mesh("Body", {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, -3}, 0, {At(1, 0, 0)});
  none.Weights(mesh, none.Bone("root"), {0, 1, 2}, {1, 1, 1});
  EXPECT_THAT(Told(none),
              UnorderedElementsAre("no-bind-pose", "mesh-not-bound Body", "no-uvs Body", "no-material Body"));
}

TEST_F(Check, TellsWhereAScaledRootIsPut) {
  for (const double height : {90.0, 0.0}) {
    SoundRig rig;
    rig.pose[0].matrix = ScaleMatrix(100, 100, 100);
    rig.pose[0].matrix[13] = height;
    EXPECT_THAT(Told(rig.File()),
                UnorderedElementsAre(height > 0 ? "root-scale root" : "root-scale-harmless root",
                                     "posed-bones root"));
  }
  SoundRig rig;
  rig.pose[0].matrix = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 90, 0, 1};
  Told(rig.File());
  EXPECT_THAT(TextOf("root-scale"), HasSubstr("at (0, 180, 0) instead of (0, 90, 0)"));
}

TEST_F(Check, TellsOfWeights) {
  SoundRig rig(false);
  rig.Weights(rig.body, rig.root, {0, 9, 1}, {-1, 1, 0.5});
  const auto stranger = rig.Null("stranger");
  rig.Weights(rig.body, stranger, {0}, {1});
  auto crowd = rig.Further("Crowd");
  for (const char* name : {"b", "c", "d", "e"}) {
    const auto bone = rig.Bone(name, rig.root);
    rig.pose.push_back({bone, Identity()});
    rig.Weights(crowd, bone, {0}, {1});
  }
  auto additive = rig.Further("Additive");
  rig.Weights(additive, rig.tip, {0}, {0}).Add({"Mode", {"Additive"}});
  constexpr Character::Id kNobody = 9999;
  rig.Weights(additive, kNobody, {0}, {1});
  auto total = rig.Further("Total");
  total.skin = 0;
  rig.Weights(total, rig.tip, {0}, {0}).Add({"Mode", {"Total1"}});
  rig.pose.push_back({rig.Triangle("Bare").node, Identity()});
  rig.pose.push_back({rig.Triangle("Hung", rig.tip).node, Identity()});
  EXPECT_THAT(
      Told(rig.File()),
      UnorderedElementsAre("unknown-link stranger", "unweighted-vertices Body", "bad-weights Body",
                           "unnormalised-weights Body, Crowd", "weights-out-of-range Body",
                           "many-influences Crowd", "additive-skin Additive", "cluster-without-bone Additive",
                           "several-skins Total", "total-one-skin Total", "no-skin Bare",
                           "no-skin-on-bone Hung", "no-uvs Hung, Bare", "no-material Hung, Bare"));
  EXPECT_THAT(TextOf("unweighted-vertices"), HasSubstr("1 of 3 points"));
}

TEST_F(Check, TellsOfMeshesThatComeOutOtherwise) {
  SoundRig rig;
  const auto add = [&](const char* name, std::vector<double> points, std::vector<double> polygons) {
    auto mesh = rig.Mesh(name, std::move(points), std::move(polygons));
    rig.Weights(mesh, rig.root, {0, 1, 2, 3}, {1, 1, 1, 1});
    rig.Finish(mesh);
    rig.pose.push_back({mesh.node, Identity()});
    return mesh;
  };
  const std::vector<double> four{0, 0, 0, 1, 0, 0, 0, 1, 0, 5, 5, 5};
  const auto empty = add("Empty", {}, {});
  rig.Further("Hidden", empty.node);
  add("Loose", four, {0, 1, -3});
  add("Faceless", four, {});
  add("Broken", four, {0, 1, -3, 1, 2, -10});
  const auto parts = add("Parts", four, {0, 1, -3, 0, 0, -2, 1, 2, -4});
  rig.Material(parts);
  Character::MaterialNumbers(parts, {0, 0, 7});
  rig.Other("NurbsSurface", "Vase");
  const std::vector<std::string> told = Told(rig.File());
  for (const char* line : {"empty-mesh Empty", "hidden-by-empty-mesh Hidden", "loose-points Loose, Broken",
                           "no-triangles Faceless", "dropped-polygons Broken", "degenerate-triangles Parts",
                           "lost-triangles Parts", "unused-material Parts_a", "not-a-mesh Vase"}) {
    EXPECT_THAT(told, testing::Contains(line));
  }
}

TEST_F(Check, TellsWhatBecomesOfNames) {
  SoundRig rig;
  const std::string tooLong(252, 'n');
  for (const char* name :
       {"Arm:Left", "a&b", "Coat", "coat", "Coat", "tongue", "Helper", "tab\tbed", tooLong.c_str()}) {
    rig.Further(name);
  }
  EXPECT_THAT(Told(rig.File(), "model.fbx", {"helper", "nobody"}),
              UnorderedElementsAre("mesh-name-changed Arm:Left", "xml-name a&b", "name-case-clash coat",
                                   "name-clash Coat", "excluded Helper", "unknown-exclusion nobody",
                                   "unwritable-name " + tooLong));
  EXPECT_THAT(Told(SoundRig().File(), "model.fbx", {"Body"}),
              UnorderedElementsAre("excluded Body", "all-left-out"));
  SoundRig parts;
  Character::MaterialNumbers(parts.body, {0});
  parts.Texture(parts.Material(parts.body), "only.tga");
  EXPECT_THAT(Told(parts.File(), "model.fbx", {"body_a"}), testing::Contains("excluded Body_a"));
  EXPECT_THAT(report_.members, ElementsAre("skeleton.csf", "model.xfg", "Body.cmf", "Body.xrf"));
}

TEST_F(Check, TellsOfMaterialsAndPictures) {
  SoundRig rig;
  rig.Texture(rig.material, "c:\\a\\skin.v1.png");
  rig.Texture(rig.material, "second.png");
  rig.Further("Jacket");
  rig.Texture(rig.material, "c:/a/skin.v2.png");
  rig.Texture(rig.material, "bumps.png", "", "NormalMap");
  rig.Further("Stack");
  rig.Texture(rig.material, "", "", "DiffuseColor", "LayeredTexture");
  rig.Further("Hat");
  rig.Texture(rig.material, "");
  rig.Texture(rig.Material(rig.Bound("Flat"), "phong", {Property("TransparencyFactor", {0.25})}), "flat.tga");
  const auto patchy = rig.Bound("Patchy");
  Character::Coordinates(patchy, {0, 0, 1, 0}, {0, 1, 5});
  rig.Material(patchy, "lambert", {Property("DiffuseColor", {2.0, 0.0, 0.0})});
  rig.Material(patchy, "unheard-of");
  EXPECT_THAT(Told(rig.File()),
              UnorderedElementsAre(
                  "several-textures material", "maps-ignored material", "texture-not-a-file material",
                  "texture-clash skin.tga", "texture-nameless material", "texture-unusable Flat",
                  "opacity-partial material", "opacity-zero material", "missing-uvs Patchy",
                  "colour-range material", "unknown-material material", "unused-material Patchy_a"));
}

TEST_F(Check, ComparesTheBonesOfActorsWithTheProducts) {
  SoundRig rig;
  for (const char* name : {"rig:LeftHand", "thumbA.R", "l_femur"}) {
    rig.pose.push_back({rig.Bone(name, rig.root), Identity()});
  }
  rig.Further("Head1");
  const std::vector<std::string> told = Told(rig.File(), "Actor (Girl).fbx");
  EXPECT_EQ(report_.objectId, "actor (girl)");
  EXPECT_THAT(TextOf("similar-bone"), HasSubstr("L_hand"));
  for (const char* line : {"similar-bone rig:LeftHand", "similar-bone thumbA.R", "bone-letter-case l_femur",
                           "head-part Head1"}) {
    EXPECT_THAT(told, testing::Contains(line));
  }
  EXPECT_THAT(told, testing::Contains(HasSubstr("missing-bones headcontrol, L_clav, L_foot")));
  EXPECT_THAT(told, testing::Contains(testing::StartsWith("missing-control-bones L_bicepA")));
}

}  // namespace
