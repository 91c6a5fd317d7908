// SPDX-License-Identifier: MIT
//
// What a check tells of rigs with one fault or a few.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "rig_check/bone_places.h"
#include "rig_check/check_rig.h"
#include "scene/math/nearest_rotation.h"
#include "support/character.h"
#include "support/gltf_builder.h"
#include "support/temp_folder.h"

namespace {

using support::At;
using support::Character;
using support::Doubles;
using support::FbxRecord;
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
      if (finding.code == "repair-helps") continue;  // TellsWhereSkinAndBonesAreApart looks at it
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
  EXPECT_THAT(TextOf("not-loaded"), HasSubstr("of no format that is read"));
  EXPECT_EQ(ts3d::CheckRig("\\nowhere.fbx").findings.at(0).code, "no-file");
  EXPECT_THAT(Told("; FBX 7.5.0 project file\nFBXHeaderExtension: {\nEncryptionType: 1\n}\nObjects: {\n}\n"),
              ElementsAre("password"));
  EXPECT_EQ(report_.Worst(), ts3d::Severity::Error);
}

TEST_F(Check, TellsOfBonesThatAreLostOrShareNames) {
  SoundRig rig;
  const auto group = rig.Node("group");
  rig.Bone("hidden2", rig.Bone("hidden1", group));
  rig.Bone("under", rig.Bone("second"));
  for (const auto& [name, parent] :
       {std::pair("tip", rig.tip), std::pair("", rig.tip), std::pair("rig:hip", rig.root),
        std::pair("rig:arm", rig.root), std::pair("c&d", rig.root)}) {
    rig.pose.push_back({rig.Bone(name, parent), Identity()});
  }
  EXPECT_THAT(
      Told(rig.File()),
      UnorderedElementsAre("idle-hidden-bones group", "idle-second-root second", "idle-same-bone-name tip",
                           "unnamed-bone", "bone-name-changed rig:hip, rig:arm", "xml-bone-name c&d",
                           testing::StartsWith("posed-bones")));
  EXPECT_THAT(TextOf("idle-hidden-bones"), HasSubstr("2 skeleton nodes"));
  EXPECT_THAT(TextOf("bone-name-changed"), HasSubstr("\"rig:\" in the name becomes \"ri\""));
}

TEST_F(Check, TellsOfWeightsThatDoNotReachTheirBones) {
  SoundRig rig;
  const auto hidden = rig.Bone("hidden", rig.Node("group")), second = rig.Bone("second");
  const auto namesake = rig.Bone("root", rig.Bone("third")), twin = rig.Bone("tip", rig.root);
  rig.pose.push_back({twin, Identity()});
  for (const auto bone : {hidden, second, namesake, twin}) rig.Weights(rig.body, bone, {0}, {0.5});
  rig.Weights(rig.body, rig.Bone("idle"), {0}, {0});
  EXPECT_THAT(Told(rig.File()),
              UnorderedElementsAre("hidden-bones group", "second-root second, third", "idle-second-root idle",
                                   "unknown-link hidden, second", "namesake root", "same-bone-name tip",
                                   "unnormalised-weights Body"));
  EXPECT_THAT(TextOf("unknown-link"), HasSubstr("2 weights"));
}

TEST_F(Check, TellsWhatAModelWithoutSkeletonLoses) {
  Character model;
  model.Triangle("Kept");
  EXPECT_THAT(Told(model), UnorderedElementsAre("static-model", "no-material Kept", "no-uvs Kept"));
  model.Mesh("Moved", {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, -3}, 0, {At(1, 0, 0)});
  EXPECT_THAT(Told(model), testing::Contains("place-lost Moved"));
  auto skinned = model.Triangle("Skinned");
  model.Weights(skinned, model.Bone("hip", model.Node("group")), {0}, {1});
  EXPECT_THAT(Told(model), testing::AllOf(testing::Contains("hidden-bones group"),
                                          testing::Not(testing::Contains("place-lost Moved"))));
}

/// A skin of two bones that was bound where the bones of SoundRig are.
struct BoundSkin : SoundRig {
  BoundSkin() : SoundRig(false) {
    Bind(root, {0, 1}, Identity());
    Bind(tip, {2}, Translation(0, 5, 0));
  }
  void Bind(Id bone, std::vector<double> points, const support::Matrix16& link) {
    support::Matrix16 toLink = Identity();
    for (size_t i = 12; i < 15; ++i) toLink[i] = -link[i];
    FbxRecord& cluster = Weights(body, bone, points, std::vector<double>(points.size(), 1.0));
    cluster.Add(Doubles("Transform", toLink));
    cluster.Add(Doubles("TransformLink", link));
  }
};

TEST_F(Check, TellsWhereSkinAndBonesAreApart) {
  BoundSkin sound;
  sound.pose.pop_back();
  EXPECT_THAT(Told(sound.File()), IsEmpty()) << "harmless: mesh and bones stand where they were bound";
  EXPECT_THAT(Told(BoundSkin()), UnorderedElementsAre("no-bind-pose-harmless"));
  BoundSkin posed;
  posed.pose[1].matrix = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 5, 0, 1};
  EXPECT_THAT(Told(posed.File()), UnorderedElementsAre("other-bind-pose tip", "posed-bones tip"));
  EXPECT_THAT(TextOf("other-bind-pose"), HasSubstr("by 90 degrees and 0 "));
  EXPECT_THAT(TextOf("repair-helps"), HasSubstr("--bind-from-skin was tried"));
  posed = BoundSkin();
  posed.pose[1].matrix[12] = 2;
  posed.pose.pop_back();
  EXPECT_THAT(Told(posed.File()), testing::Contains("skin-not-bound Body"));
  EXPECT_THAT(TextOf("skin-not-bound"), HasSubstr("at \"tip\", by 0 degrees and 2 (40.0 %"));
  BoundSkin halfBound;
  halfBound.pose.erase(halfBound.pose.begin() + 1);
  EXPECT_THAT(Told(halfBound.File()), ElementsAre("bone-not-bound-harmless tip"));
  BoundSkin scaled;
  scaled.pose[1].matrix = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 5, 0, 1};
  const auto end = scaled.Bone("end", scaled.tip, {At(0, 5, 0)});
  scaled.Bind(end, {0}, Translation(0, 10, 0));
  scaled.pose.push_back({end, Translation(0, 10, 0)});
  EXPECT_THAT(Told(scaled.File()), testing::Contains(testing::StartsWith("scaled-bones")));
}

TEST_F(Check, NamesWhatStandsBetweenABoneAndTheOneAbove) {
  SoundRig rig;
  for (const char* name : {"idle", "limb"}) {
    const auto hub = rig.Null("hub", rig.tip), bone = rig.Bone(name, hub);
    rig.pose.insert(rig.pose.end(), {{hub, Translation(0, 7, 0)}, {bone, Translation(0, 9, 0)}});
    if (name == std::string("limb")) rig.Weights(rig.body, rig.Bone("hand", bone), {0}, {0.5});
  }
  EXPECT_THAT(Told(rig.File()), testing::Contains("node-between-bones limb"));
  EXPECT_THAT(TextOf("node-between-bones"), HasSubstr("there is \"hub\""));
}

TEST_F(Check, TellsOfStrayPointsMotionsAndDecimalCommas) {
  SoundRig rig(false);
  std::vector<double> points, polygons, all;
  for (int i = 0; i < 120; ++i) {
    points.insert(points.end(), {i == 119 ? 900.0 : i % 3 * 1.0, i % 5 * 1.0, 0});
    polygons.push_back(i % 3 == 2 ? -i - 1 : i);
    all.push_back(i);
  }
  auto cloud = rig.Mesh("Cloud", points, polygons);
  rig.Weights(cloud, rig.root, all, std::vector<double>(all.size(), 1.0));
  rig.pose.push_back({cloud.node, Identity()});
  EXPECT_THAT(Told(rig.File()), testing::Contains("stray-points Cloud"));
  EXPECT_THAT(TextOf("stray-points"), HasSubstr("1 points"));
  Character motion;
  motion.Bone("tip", motion.Bone("root"));
  EXPECT_THAT(Told(motion), ElementsAre("no-mesh"));
  EXPECT_THAT(TextOf("no-mesh"), HasSubstr("2 bones and no mesh"));
  SoundRig comma;
  comma.Node("moved", 0, {At(0.5, 1.5, 0.5)});
  std::string text = comma.File();
  for (size_t at = 0; (at = text.find("0.5", at)) != std::string::npos;) text[at + 1] = ',';
  EXPECT_THAT(Told(text), testing::Contains("decimal-commas"));
  std::string old = support::ReadWholeFile(TS3D_SOURCE_FOLDER "/tests/fixtures/strip_5800_ascii.fbx");
  EXPECT_THAT(Told(old), testing::Not(testing::Contains("decimal-commas")));
  old.replace(old.find("Default: 0.5"), 12, "Default: 0,5");
  EXPECT_THAT(Told(old), testing::Contains("decimal-commas"));
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
  const auto unbound = rig.Bone("unbound", rig.root, {At(1, 0, 0)});
  const auto child = rig.Bone("child", unbound);
  rig.pose.push_back({child, Translation(-1, 0, 0)});
  for (const auto weighted : {unbound, child}) rig.Weights(rig.body, weighted, {0}, {0.5});
  rig.Bone("end", rig.root);
  rig.Node("moved", 0, {At(1, 0, 0)});
  EXPECT_THAT(
      Told(rig.File()),
      UnorderedElementsAre("mirrored-bone mirrored", "uneven-scale uneven", "nearly-even-scale nearly",
                           "local-matrix local", "bone-not-bound-harmless unbound", "idle-bone-not-bound end",
                           "parent-not-bound child", "posed-bones mirrored, uneven, nearly, child",
                           "unnormalised-weights Body"));
  Character none;
  auto mesh = none.Mesh("Body", {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, -3}, 0, {At(1, 0, 0)});
  none.Weights(mesh, none.Bone("root"), {0, 1, 2}, {1, 1, 1});
  EXPECT_THAT(Told(none),
              UnorderedElementsAre("no-bind-pose", "skin-not-bound Body", "no-uvs Body", "no-material Body"));
}

/// A sheared bone stands right as its x axis has it, and turned next to all axes.
TEST(Gap, ReadsShearEitherWay) {
  const auto turned = [](double degrees) { return scene::KFbxXMatrix::Rotation({20, 30, degrees}); };
  const scene::KFbxXMatrix sheared = scene::KFbxXMatrix::Scaling({1, 1.5, 1}) * turned(40);
  EXPECT_LT(ts3d::GapBetween(scene::KFbxXMatrix::Rotation(sheared.GetR()), sheared).degrees, 1e-6);
  EXPECT_LT(ts3d::GapBetween(scene::NearestRotationIfSheared(sheared), sheared).degrees, 1e-6);
  EXPECT_GT(ts3d::GapBetween(turned(60), sheared).degrees, 5);
  EXPECT_NEAR(ts3d::GapBetween(turned(40), turned(43)).degrees, 3, 1e-6);
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
  rig.Weights(rig.body, rig.root, {0, 3, 1}, {-1, 1, 0.9});
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
                           "lost-triangles Parts", "unused-material Parts_a", "not-a-mesh Vase",
                           "shifted-parts Loose, Faceless, Broken, Parts"}) {
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

TEST_F(Check, TellsOfWhatIsSeenAndNotOfWhatIsRounded) {
  const auto turned = [](double degrees) {
    BoundSkin rig;
    const double angle = degrees * std::numbers::pi / 180, c = std::cos(angle), s = std::sin(angle);
    rig.pose[1].matrix = {c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 5, 0, 1};
    return rig.File();
  };
  EXPECT_THAT(Told(turned(2)), testing::Contains("other-bind-pose tip"));
  EXPECT_THAT(Told(turned(0.1)), IsEmpty());
  const auto shifted = [](double x) {
    BoundSkin rig;
    rig.pose[1].matrix[12] = x;
    return rig.File();
  };
  EXPECT_THAT(Told(shifted(0.1)), testing::Contains("other-bind-pose tip")) << "a fiftieth of the size";
  EXPECT_THAT(Told(shifted(0.004)), IsEmpty());
  // What stands between bones counts with its scale, too.
  SoundRig scaled;
  support::Matrix16 twice = ScaleMatrix(2, 2, 2);
  twice[13] = 5;
  const auto hub = scaled.Null("hub", scaled.tip), limb = scaled.Bone("limb", hub);
  scaled.pose.insert(scaled.pose.end(), {{hub, twice}, {limb, Translation(0, 9, 0)}});
  const auto hub2 = scaled.Null("hub2", limb), hand = scaled.Bone("hand", hub2);
  scaled.pose.insert(scaled.pose.end(), {{hub2, Translation(0, 11, 0)}, {hand, Translation(0, 12, 0)}});
  scaled.Weights(scaled.body, hand, {0}, {0.5});
  EXPECT_THAT(Told(scaled.File()), testing::Contains("node-between-bones limb"))
      << "what is below moves with it, and is not told again";
}

TEST_F(Check, NamesTheBonesThatUnweightedPointsOfActorsAreNearestTo) {
  SoundRig rig;
  auto high = rig.Mesh("High", {0, 0, 0, 1, 5, 0, 0, 5, 1}, {0, 1, -3});
  rig.Weights(high, rig.root, {0}, {1});
  rig.Finish(high);
  rig.pose.push_back({high.node, Identity()});
  EXPECT_THAT(Told(rig.File(), "Actor (Girl).fbx"), testing::Contains("unweighted-vertices High"));
  EXPECT_THAT(TextOf("unweighted-vertices"), HasSubstr("\"tip\"")) << "although actors are turned up";
  EXPECT_THAT(TextOf("unweighted-vertices"), testing::Not(HasSubstr("\"root\"")));
  for (const ts3d::Finding& finding : report_.findings)
    EXPECT_THAT(finding.names, testing::Each(testing::Not(testing::StartsWith("skirt"))))
        << "not all wear one";
}

TEST_F(Check, TakesPicturesOfOneNameInSeveralFoldersForCopies) {
  SoundRig rig;
  rig.Texture(rig.material, "c:\\a\\skin.png");
  rig.Further("Hat");
  rig.Texture(rig.material, "d:/b/SKIN.png");
  EXPECT_THAT(Told(rig.File()), IsEmpty());
}

TEST_F(Check, TellsOfHiddenMeshesAndOfMotionsThatStay) {
  SoundRig rig;
  const auto hidden = rig.Node("wardrobe", 0, {Property("Visibility", {0.0})});
  rig.Further("Coat", hidden);
  EXPECT_THAT(Told(rig.File()), ElementsAre("hidden-mesh Coat"));
  support::GltfFile file;
  file.Top({{"mesh", file.Mesh({{"attributes", {{"POSITION", file.Points({0, 0, 0, 1, 0, 0, 0, 1, 0})}}}})}});
  for (const char* name : {"walk", "run", "jump", "sit", "wave"}) file.Add("animations", {{"name", name}});
  EXPECT_THAT(Told(file.Glb(), "model.glb"), testing::Contains("motion-left-out"));
  EXPECT_THAT(TextOf("motion-left-out"), HasSubstr("\"walk\", \"run\", \"jump\" and 2 more"));
}

TEST_F(Check, ProposesNoRepairThatDoesNotHelp) {
  const auto repairs = [&](const std::string& model) {
    Told(model);
    std::string options;
    for (const ts3d::Finding& finding : report_.findings) {
      const size_t option = finding.text.find("--");
      if (finding.code == "repair-helps")
        options += finding.text.substr(option, finding.text.find(' ', option) - option) + " ";
    }
    return options;
  };
  SoundRig second, hidden, both;
  second.Weights(second.body, second.Bone("second"), {0}, {1});
  EXPECT_EQ(repairs(second.File()), "--join-roots ");
  const auto inGroup = hidden.Bone("inGroup", hidden.Node("group", hidden.root));
  hidden.Weights(hidden.body, inGroup, {0}, {1});
  EXPECT_EQ(repairs(hidden.File()), "--open-groups ");
  both.Weights(both.body, both.Bone("far", both.Node("group")), {0}, {1});
  EXPECT_EQ(repairs(both.File()), "--open-groups --join-roots ") << "one by itself does nothing";
  BoundSkin posed;
  posed.pose[1].matrix[12] = 2;
  EXPECT_EQ(repairs(posed.File()), "--bind-from-skin ");
  SoundRig hung;
  hung.pose.push_back({hung.Triangle("Hat", hung.tip).node, Translation(0, 5, 0)});
  EXPECT_EQ(repairs(hung.File()), "--attach-rigid ") << "the hat would stay behind when the tip moves";
}

TEST_F(Check, ComparesTheBonesOfActorsWithTheProducts) {
  SoundRig rig;
  for (const char* name : {"rig:LeftHand", "rig:LeftShoulder", "rig:LeftArm", "thumbA.R", "l_femur"}) {
    rig.pose.push_back({rig.Bone(name, rig.root), Identity()});
  }
  rig.Further("Head1");
  const std::vector<std::string> told = Told(rig.File(), "Actor (Girl).fbx");
  EXPECT_EQ(report_.objectId, "actor (girl)");
  EXPECT_THAT(TextOf("similar-bone"), HasSubstr("L_hand"));
  EXPECT_THAT(report_.findings, testing::Contains(testing::AllOf(
                                    testing::Field(&ts3d::Finding::names, ElementsAre("rig:LeftShoulder")),
                                    testing::Field(&ts3d::Finding::text, HasSubstr("L_clav")))));
  for (const char* line : {"similar-bone rig:LeftHand", "similar-bone thumbA.R", "bone-letter-case l_femur",
                           "head-part Head1"}) {
    EXPECT_THAT(told, testing::Contains(line));
  }
  EXPECT_THAT(told, testing::Contains(HasSubstr("missing-bones headcontrol, L_clav, L_foot")));
  EXPECT_THAT(told, testing::Contains(testing::StartsWith("missing-control-bones L_bicepA")));
}

}  // namespace
