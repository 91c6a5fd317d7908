// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/character.h"
#include "support/test_host.h"

namespace {

using support::Character;
using support::TestHost;
using testing::HasSubstr;
using testing::Not;

/// A small rig with a hat of two materials, the hat on the body.
Character SmallActor() {
  Character model;
  const auto neck = model.Bone("lowerneck", model.Bone("Mobo"));
  model.Bone("midneck", neck);
  auto body = model.Triangle("Body");
  model.Weights(body, neck, {0, 1, 2}, {1, 1, 1});
  const auto hat =
      model.Mesh("Hat:Brim", {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0}, {0, 1, -3, 1, 3, -3}, body.node);
  Character::MaterialNumbers(hat, {0, 1});
  model.Material(hat);
  model.Material(hat);
  model.Triangle("head");
  return model;
}

TEST(Document, OfAFemaleActor) {
  TestHost host;
  host.job.rotationX = -90;
  host.job.rotationY = 180;
  host.job.boneRenameList = "lowerneck=neck";
  host.job.meshOptionList = "!habrim_A|Body";
  ASSERT_EQ(host.Convert(SmallActor().Text(), "Actor (Female).fbx"), ts3d::ConversionResult::Success);
  EXPECT_EQ(
      host.ReadPackage("Actor (Female).fbx").Names(),
      "skeleton.csf Actor (Female).xfg Body.cmf HaBrim_a.cmf HaBrim.cmf Body.xrf HaBrim_a.xrf HaBrim.xrf");
  EXPECT_EQ(host.ReadPackage("Actor (Female).fbx")["Actor (Female).xfg"],
            R"xml(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE cal_config SYSTEM "http://www.tessaly3d.example/dtds/cal_config.dtd">
<cal_config>
	<object_id>actor (female)</object_id>
	<unposed_height>1.6733</unposed_height>
	<object_version major="1" minor="0" bugfix="0"/>
	<scale>1.0</scale>
<flags>
	<invert_v/>
	<rotation x="-90" y="180"/>
</flags>

<skeleton_file>Skeleton.CSF</skeleton_file>
<bone_renames>
	<bone_rename old="Mobo" new="!Mobo"/>
	<bone_rename old="lowerneck" new="neck"/>
</bone_renames>

<control_bones>

<control_bone name="neck" base="!upper neck">
   <twist_bone name="!lower neck"/>
   <twist_bone name="!mid neck"/>
</control_bone>
</control_bones>

<meshes>
	<mesh name="Body" file="Body.cmf"/>
	<mesh name="HaBrim" file="HaBrim.cmf"/>
	<mesh name="HaBrim_a" file="HaBrim_a.cmf" backfacing="both"/>
</meshes>
<materials>
	<material_file name="face" threadID="51">MediumResolutionSkin_1.xrf</material_file>
	<material_file name="right eye" threadID="52">MediumResolutionSkin_2.xrf</material_file>
	<material_file name="left eye" threadID="53">MediumResolutionSkin_3.xrf</material_file>
	<material_file name="&lt;mouth&gt;" threadID="54">MediumResolutionSkin_4.xrf</material_file>
	<material_file name="teeth (upper)" threadID="55">MediumResolutionSkin_5.xrf</material_file>
	<material_file name="teeth (lower)" threadID="56">MediumResolutionSkin_6.xrf</material_file>
	<material_file name="tongue" threadID="57">MediumResolutionSkin_7.xrf</material_file>
	<material_file name="body" threadID="150">body.xrf</material_file>
	<material_file name="hair (center part, short)" threadID="60">hair20.xrf</material_file>
	<material_file name="hair (nappy)" threadID="61">hair18.xrf</material_file>
	<material_file name="hair (shoulder, no part)" threadID="62">hair19.xrf</material_file>
	<material_file name="hair (balding)" threadID="63">hair1.xrf</material_file>
	<material_file name="hair (receding)" threadID="64">hair2.xrf</material_file>
	<material_file name="hair (short, no part)" threadID="65">hair3.xrf</material_file>
	<material_file name="hair (medium, no part)" threadID="66">hair4.xrf</material_file>
	<material_file name="hair (center part, bangs)" threadID="67">hair5.xrf</material_file>
	<material_file name="hair (full head, thick)" threadID="68">hair6.xrf</material_file>
	<material_file name="hair (spiky, low)" threadID="69">hair7.xrf</material_file>
	<material_file name="hair (spiky, curly)" threadID="70">hair8.xrf</material_file>
	<material_file name="hair (center part, wavy)" threadID="71">hair9.xrf</material_file>
	<material_file name="hair (collar length, thin)" threadID="72">hair10.xrf</material_file>
	<material_file name="hair (mid-length bob)" threadID="73">hair11.xrf</material_file>
	<material_file name="hair (collar length, thick)" threadID="74">hair12.xrf</material_file>
	<material_file name="hair (shoulder length)" threadID="75">hair13.xrf</material_file>
	<material_file name="hair (tight braids)" threadID="76">hair14.xrf</material_file>
	<material_file name="hair (corn rows)" threadID="77">hair15.xrf</material_file>
	<material_file name="pig &amp; pony tails" threadID="78">pig &amp; pony tails.xrf</material_file>
	<material_file name="Body" threadID="151">Body.xrf</material_file>
	<material_file name="HaBrim" threadID="152">HaBrim.xrf</material_file>
	<material_file name="HaBrim_a" threadID="153">HaBrim_a.xrf</material_file>
</materials>
</cal_config>
)xml");
}

TEST(MeshList, IgnoresFurtherMaterialsOfAMeshWithoutLayers) {
  Character model;
  const auto mesh = model.Triangle("Body");
  model.Material(mesh);
  model.Material(mesh);
  TestHost host;
  host.Convert(model.Text());
  EXPECT_THAT(host.Document(), Not(HasSubstr("Body_a")));
}

TEST(Document, OfOtherActorTypesDiffersInNameHeightAndControlBones) {
  struct {
    const char *file, *start, *end;
  } const cases[] = {
      {"R&B <1>", "\t<object_id>R&B <1></object_id>\n\t<object_version", "</bone_renames>\n\n<meshes>\n"},
      {"Actor (Male)", "<object_id>actor (male)</object_id>\n\t<unposed_height>1.76136</unposed_height>\n",
       "</bone_renames>\n\n<control_bones>\n\n"},
      {"Actor (Boy)", "<object_id>actor (boy)</object_id>\n\t<object_version", "<control_bones>"},
      {"Actor (Girl)", "<object_id>actor (girl)</object_id>\n\t<object_version", "<control_bones>"},
      {"Actor (Teenager)", "<object_id>actor (teenager)</object_id>\n\t<object_version", "<control_bones>"},
      {"Actor (Baby)", "<object_id>actor (baby)</object_id>\n\t<object_version", "<control_bones>"}};
  for (const auto& [file, start, end] : cases) {
    TestHost host;
    host.Convert(SmallActor().Text(), std::string(file) + ".fbx");
    EXPECT_THAT(support::ReadWholeFile(host.folder.Path(file + std::string(".xfg"))),
                testing::AllOf(HasSubstr(start), HasSubstr(end)));
  }
}

}  // namespace
