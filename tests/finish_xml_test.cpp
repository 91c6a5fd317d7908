// SPDX-License-Identifier: MIT
//
// Documents before and after final settings, read by an XML parser that is not ours.
#include <gtest/gtest.h>

#include <pugixml.hpp>

#include "driver/final_settings.h"
#include "support/test_host.h"

namespace {

using support::ReadWholeFile;
using support::TestHost;

struct Parsed {
  pugi::xml_document tree;
  pugi::xml_node Config() const { return tree.child("cal_config"); }
};

void Parse(const std::string& text, Parsed& parsed) {
  const pugi::xml_parse_result result = parsed.tree.load_string(text.c_str(), pugi::parse_full);
  ASSERT_TRUE(result) << result.description() << " at " << result.offset << "\n" << text;
  ASSERT_TRUE(parsed.Config());
}

pugi::xml_node FindByName(pugi::xml_node list, const char* name) {
  return list.find_child_by_attribute("name", name);
}

class FinishXml : public ::testing::TestWithParam<const char*> {};

TEST_P(FinishXml, DocumentsAreWellFormedAndHoldTheSettingsForEveryActorType) {
  TestHost host;
  const std::string model = std::string(GetParam()) + ".fbx";
  ASSERT_EQ(host.Convert(ReadWholeFile(TS3D_SAMPLES_FOLDER "/scout.fbx"), model),
            ts3d::ConversionResult::Success);
  const std::string path = host.folder.Path(std::string(GetParam()) + ".xfg");
  const bool isActor = host.job.actorType != ts3d::ActorType::None;
  Parsed before;
  Parse(ReadWholeFile(path), before);
  EXPECT_EQ(isActor, static_cast<bool>(before.Config().child("control_bones")));

  std::filesystem::create_directory(host.folder.Path("elsewhere"));
  std::filesystem::current_path(host.folder.Path("elsewhere"));
  host.job.rotationX = -90;
  host.job.rotationY = 180;
  host.job.boneRenameList = "L_femur=left \"<&>\" femur";
  ASSERT_EQ(ts3d::ApplyFinalSettings(
                host.job, {host.ModelPath(model), 75.0f, "body=A & B|hat=~<Cap>|backpack=`\"Bag\""}),
            ts3d::FinishResult::Success);

  Parsed after;
  Parse(ReadWholeFile(path), after);
  const pugi::xml_node config = after.Config();
  EXPECT_STREQ(config.child_value("scale"), "0.750000");
  EXPECT_STREQ(config.child("flags").child("rotation").attribute("x").value(), "-90");
  EXPECT_STREQ(config.child("flags").child("rotation").attribute("y").value(), "180");
  EXPECT_STREQ(
      config.child("bone_renames").find_child_by_attribute("old", "L_femur").attribute("new").value(),
      "left \"<&>\" femur");
  EXPECT_STREQ(FindByName(config.child("meshes"), "hat").attribute("file").value(), "hat.cmf");
  EXPECT_STREQ(FindByName(config.child("materials"), "A & B").child_value(), "body.xrf");
  const pugi::xml_node cap = FindByName(config.child("switches"), "<Cap>");
  EXPECT_STREQ(cap.first_child().attribute("name").value(), "present");
  EXPECT_STREQ(cap.first_child().first_child().attribute("name").value(), "hat");
  const pugi::xml_node bag = FindByName(config.child("switches"), "\"Bag\"");
  EXPECT_STREQ(bag.first_child().attribute("name").value(), "absent");
  EXPECT_EQ(isActor, static_cast<bool>(config.child("glance_adjust")));
}

INSTANTIATE_TEST_SUITE_P(ActorTypes, FinishXml,
                         ::testing::Values("scout", "Actor (Male)", "Actor (Female)", "Actor (Boy)",
                                           "Actor (Girl)", "Actor (Teenager)", "Actor (Baby)"));

}  // namespace
