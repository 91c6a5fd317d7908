// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "config/bone_name_map.h"
#include "config/bone_renames.h"
#include "config/control_bones.h"
#include "config/escape_xml.h"
#include "config/fixed_materials.h"

namespace {

using ts3d::ActorType;

/// A chain of bones; names that begin with "+" are weighted, and lose the "+".
ts3d::BoneTree Chain(std::initializer_list<std::string_view> names) {
  ts3d::BoneTree tree;
  ts3d::BoneNode* parent = &tree.Root();
  for (const std::string_view name : names) {
    parent = &tree.AddChild(*parent);
    parent->weighted = name.starts_with('+');
    parent->name = name.substr(parent->weighted ? 1 : 0);
  }
  return tree;
}

std::string Line(const std::string& oldName, const std::string& newName) {
  return "\t<bone_rename old=\"" + oldName + "\" new=\"" + newName + "\"/>\n";
}

TEST(BoneRenames, WithoutAListMarkTheRootAndAllUnweightedBones) {
  EXPECT_EQ(BoneRenameLines(Chain({"+hip", "+spine"}), ""), Line("hip", "!hip"));
  EXPECT_EQ(BoneRenameLines(Chain({"hip", "+spine", "L_femur"}), ""),
            Line("hip", "!hip") + Line("hip", "!hip") + Line("L_femur", "!L_femur"));
}

TEST(BoneRenames, FollowTheHostsListAfterTheRoot) {
  const auto tree = Chain({"hip", "+L_femur", "R_femur"});
  const std::string root = Line("hip", "!hip");
  EXPECT_EQ(BoneRenameLines(tree, "L_femur=left femur"), root + Line("L_femur", "left femur"));
  EXPECT_EQ(BoneRenameLines(tree, "R_femur=right|none=x<y|l_femur=a"),
            root + Line("R_femur", "!right") + Line("none", "!x<y") + Line("l_femur", "!a"));
  EXPECT_EQ(BoneRenameLines(tree, "L_femur=a=b||hip"), root + Line("L_femur", "a=b"));
}

TEST(BoneRenames, OfTheFinalSettingsUseTheProductsNamesForTheOthers) {
  const auto tree = Chain({"Mobo", "+L_hand", "l_FEMUR", "R_foot", "extra", "head"});
  EXPECT_EQ(MappedBoneRenameLines(tree, "HEAD=x|nobody=y"),
            Line("Mobo", "!Mobo") + Line("l_FEMUR", "!left femur") + Line("R_foot", "right foot") +
                Line("extra", "!extra"));
}

TEST(BoneNames, AreFoundInAnyLetterCase) {
  const std::pair<const char*, const char*> cases[] = {{"headcontrol", "head control"},
                                                       {"L_FEMUR", "!left femur"},
                                                       {"R_toe", "right toes"},
                                                       {"mobo", "!Mobo"},
                                                       {"skirt_bone", "skirt adjustment"},
                                                       {"SKIRT_CONTROL", "!skirt control"},
                                                       {"L_indexcontrol", "!left indexcontrol "},
                                                       {"R_indexcontrol_", "!right indexcontrol "},
                                                       {"R_midfingcontrol", "!right midfingcontrol"},
                                                       {"L_indexcontrol ", ""},
                                                       {"", ""}};
  for (const auto& [rig, product] : cases) EXPECT_EQ(ts3d::FindProductBoneName(rig), product) << rig;
}

TEST(ControlBones, AreWrittenWhenBothBonesOfABlockExist) {
  const auto block = [](const std::string& name, const std::string& base, const std::string& twist) {
    return "<control_bone name=\"" + name + "\" base=\"!" + base + "\">\n   <twist_bone name=\"!" + twist +
           " a\"/>\n   <twist_bone name=\"!" + twist + " b\"/>\n</control_bone>\n";
  };
  const auto inverse = [](const std::string& name, const std::string& control) {
    return "<inverse_bone name=\"" + name + "\" base=\"!" + name + "\" control=\"" + control + "\"/>\n";
  };
  struct {
    ts3d::BoneTree tree;
    std::string blocks;
  } cases[] = {
      {Chain({"lowerneck", "midneck"}),
       "<control_bone name=\"neck\" base=\"!upper neck\">\n   <twist_bone name=\"!lower neck\"/>\n"
       "   <twist_bone name=\"!mid neck\"/>\n</control_bone>\n"},
      {Chain({"lowerneck", "Midneck"}), ""},
      {Chain({"L_forearmA", "L_forearmB"}), block("left forearm", "left forearm", "left forearm")},
      {Chain({"L_bicepB", "L_bicepA"}), block("left upper arm", "left shoulder", "left bicep")},
      {Chain({"L_hand", "L_forearm"}), inverse("left hand", "left forearm")},
      {Chain({"R_hand", "L_forearm"}), ""},
      // A femur needs its own second twist bone and that of the forearm, not its first.
      {Chain({"R_femurA", "R_femurB"}), ""},
      {Chain({"R_femurB", "R_forearmB"}), block("right femur", "right femur", "right femur")},
      {Chain({"L_femurB", "R_forearmB"}), ""},
      {Chain({"L_femurB", "L_forearmB"}), block("left femur", "left femur", "left femur")},
      {Chain({"L_tibia", "L_femur", "R_tibia", "R_femur", "R_hand", "R_forearm", "R_forearmB", "R_forearmA"}),
       block("right forearm", "right forearm", "right forearm") + inverse("right hand", "right forearm") +
           inverse("right tibia", "right femur") + inverse("left tibia", "left femur")}};
  for (const auto& [tree, blocks] : cases) EXPECT_EQ(ControlBoneBlocks(tree), blocks);
}

TEST(FixedMaterials, AreOneOfThreeSets) {
  struct {
    ActorType type;
    long count;
    std::string first, last;
  } const cases[] = {{ActorType::Male, 27, "\"face\" threadID=\"51\"", "pig &amp; pony tails"},
                     {ActorType::Female, 27, "\"face\" threadID=\"51\"", "pig &amp; pony tails"},
                     {ActorType::Teenager, 27, "\"face\" threadID=\"51\"", "pig &amp; pony tails"},
                     {ActorType::Boy, 11, "\"face\" threadID=\"0\"", "hardware"},
                     {ActorType::Girl, 11, "\"face\" threadID=\"0\"", "hardware"},
                     {ActorType::Baby, 8, "\"face\" threadID=\"12\"", "body"}};
  for (const auto& [type, count, first, last] : cases) {
    const std::string lines = ts3d::FixedMaterialLines(type);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), count);
    EXPECT_TRUE(lines.starts_with("\t<material_file name=" + first + ">MediumResolutionSkin_1.xrf</"))
        << lines;
    EXPECT_TRUE(lines.ends_with(">" + last + ".xrf</material_file>\n")) << lines;
  }
  EXPECT_EQ(ts3d::FixedMaterialLines(ActorType::None), "");
}

TEST(EscapeXml, ReplacesFourCharactersOnce) {
  EXPECT_EQ(ts3d::EscapeXml("<a href=\"x\">&'\xe9</a>"), "&lt;a href=&quot;x&quot;&gt;&amp;'\xe9&lt;/a&gt;");
  EXPECT_EQ(ts3d::EscapeXml("&amp;"), "&amp;amp;");
}

}  // namespace
