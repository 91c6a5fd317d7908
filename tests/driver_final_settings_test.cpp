// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/final_settings.h"
#include "skeleton/skeleton_state.h"
#include "support/character.h"
#include "support/test_host.h"

namespace {

using support::Character;
using support::TestHost;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using ts3d::FinishResult;

constexpr const char* kDocument = R"(<cal_config>
	<scale>1.0</scale>
<flags>
	<invert_v/>
	<rotation x="7" y="8"/>
	<other/>
</flags>

<bone_renames>
	<bone_rename old="hip" new="!hip"/>
	<bone_rename old="tail" new="!tail"/>
</bone_renames>

<meshes>
	<mesh name="Body" file="Body.cmf" backfacing="both"/>
	<mesh name="Hat" file="Hat.cmf"/>
</meshes>
<materials>
	<material_file name="Body" threadID="151">Body.xrf</material_file>
	<material_file name="Hat" threadID="152">Hat.xrf</material_file>
</materials>
</cal_config>
trailing text)";

constexpr const char* kMorphs = R"(

<morphs>
<!--
	 <morphable base="[friendly_mesh_name]">
	 	 <target name="[morph name]" file="[morph_mesh.cmf]"/>
	 </morphable>
-->
</morphs>
)";

constexpr const char* kSwitchTemplate = R"(<!--
     <switch name="[descriptive_switch_name]">
          <case name="[descriptive_case_name_1]">
               <mesh_active name="[friendly_mesh_name_1]"/>
               <mesh_active name="[friendly_mesh_name_2]"/>
               <mesh_active name="[friendly_mesh_name_3_etc]"/>
          </case>
          <case name="[descriptive_case_name_2]">
               <mesh_active name="[friendly_mesh_name_1]"/>
          </case>
     </switch>
-->

</switches>

)";

std::string Rewrite(const ts3d::ConversionJob& job, const std::string& meshList = "",
                    const std::string& document = kDocument) {
  return ts3d::RewriteDocument(document, job, meshList).value_or("no document");
}

size_t CountOf(std::string_view part, std::string_view text) {
  size_t count = 0;
  for (size_t at = 0; (at = text.find(part, at)) != std::string_view::npos; ++at) ++count;
  return count;
}

TEST(RewrittenDocument, HasNewScaleFlagsAndTemplatesOnlyWithoutLists) {
  ts3d::ConversionJob job;
  job.configScale = 0.5f;
  job.rotationY = 90;
  EXPECT_EQ(Rewrite(job), std::string(R"(<cal_config>
	<scale>0.500000</scale>
<flags>
	<invert_v/>
	<rotation x="0" y="90"/>
</flags>

<bone_renames>
	<bone_rename old="hip" new="!hip"/>
	<bone_rename old="tail" new="!tail"/>
</bone_renames>

<meshes>
	<mesh name="Body" file="Body.cmf" backfacing="both"/>
	<mesh name="Hat" file="Hat.cmf"/>
</meshes>
<materials>
	<material_file name="Body" threadID="151">Body.xrf</material_file>
	<material_file name="Hat" threadID="152">Hat.xrf</material_file>
</materials>
)") + kMorphs + "<switches>\n" +
                              kSwitchTemplate + "</cal_config>");
}

TEST(RewrittenDocument, NamesMeshesAndMakesSwitchesOfThoseThatAreMarked) {
  const ts3d::ConversionJob job;
  const std::string document = Rewrite(job, "Body=Skin|Hat=~Cap");
  EXPECT_THAT(document, HasSubstr(R"(<meshes>
     <mesh name="Body" file="Body.cmf"/>
     <mesh name="Hat" file="Hat.cmf"/>
</meshes>

<materials>
	<material_file name="Skin" threadID="151">Body.xrf</material_file>
	<material_file name="Cap" threadID="152">Hat.xrf</material_file>
</materials>
)"));
  EXPECT_THAT(document, HasSubstr(std::string(R"(<switches>
     <switch name="Cap">
          <case name="present">
               <mesh_active name="Hat"/>
          </case>
          <case name="absent">
          </case>
     </switch>
)") + kSwitchTemplate));
  EXPECT_EQ(CountOf("<switch name", document), 2u);
}

TEST(RewrittenDocument, PutsTheAbsentCaseFirstForAGraveAccent) {
  const ts3d::ConversionJob job;
  EXPECT_THAT(Rewrite(job, "Hat=`Cap=2"), HasSubstr(R"(<switches>
     <switch name="Cap=2">
          <case name="absent">
          </case>
          <case name="present">
               <mesh_active name="Hat"/>
          </case>
     </switch>
)"));
}

TEST(RewrittenDocument, EscapesFriendlyNamesAndKeepsEntriesWithoutAMaterial) {
  const ts3d::ConversionJob job;
  const std::string document = Rewrite(job, "Body=~A&\"B\"|Ghost=<x>|entry without a name");
  EXPECT_THAT(document, HasSubstr("<material_file name=\"A&amp;&quot;B&quot;\" threadID=\"151\">Body.xrf"));
  EXPECT_THAT(document, HasSubstr("<switch name=\"A&amp;&quot;B&quot;\">"));
  EXPECT_THAT(document, HasSubstr("     <mesh name=\"Ghost\" file=\"Ghost.cmf\"/>\n</meshes>\n\n"));
  EXPECT_THAT(document, HasSubstr("<material_file name=\"Hat\" threadID=\"152\">"));
  EXPECT_THAT(document, Not(HasSubstr("&lt;x&gt;")));
}

TEST(RewrittenDocument, KeepsTheRootBonesLineAndRenamesTheRest) {
  ts3d::ConversionJob job;
  job.boneRenameList = "a&b=x&y|wei=<w>";
  job.skeleton = std::make_shared<ts3d::SkeletonState>();
  for (const char* name : {"hip", "wei", "A&B", "L_foot", "heavy"}) {
    job.skeleton->bones.AddChild(job.skeleton->bones.Root()).name = name;
  }
  job.skeleton->bones.MarkById(4);
  EXPECT_THAT(Rewrite(job), HasSubstr(R"(<bone_renames>
	<bone_rename old="hip" new="!hip"/>
	<bone_rename old="a&b" new="x&amp;y"/>
	<bone_rename old="wei" new="&lt;w&gt;"/>
	<bone_rename old="hip" new="!hip"/>
	<bone_rename old="L_foot" new="left foot"/>
</bone_renames>

<meshes>)"));
  job.skeleton.reset();
  EXPECT_THAT(Rewrite(job), HasSubstr("new=\"&lt;w&gt;\"/>\n</bone_renames>"));
}

TEST(RewrittenDocument, MakesActorsGlance) {
  ts3d::ConversionJob job;
  EXPECT_THAT(Rewrite(job), Not(HasSubstr("glance")));
  job.actorType = ts3d::ActorType::Teenager;
  EXPECT_THAT(Rewrite(job), HasSubstr("</switches>\n\n<glance_adjust>-17</glance_adjust>\n</cal_config>"));
}

TEST(RewrittenDocument, OfASecondPassRepeatsSwitchesButNotMorphs) {
  ts3d::ConversionJob job;
  job.actorType = ts3d::ActorType::Male;
  const std::string second = Rewrite(job, "Body=Fur", Rewrite(job, "Body=Skin"));
  EXPECT_EQ(CountOf("<scale>", second), 1u);
  EXPECT_EQ(CountOf("<rotation ", second), 1u);
  EXPECT_EQ(CountOf("<meshes>", second), 1u);
  EXPECT_EQ(CountOf("<morphs>", second), 1u);
  EXPECT_EQ(CountOf("<switches>", second), 2u);
  EXPECT_EQ(CountOf("<glance_adjust>", second), 2u);
  EXPECT_EQ(CountOf("</cal_config>", second), 1u);
  EXPECT_EQ(CountOf("<morphs>", Rewrite(job, "", Rewrite(job, "Body=Skin"))), 2u);
}

TEST(RewrittenDocument, NeedsItsMarkers) {
  ts3d::ConversionJob job;
  job.boneRenameList = "a=b";
  for (const char* marker : {"</cal_config>", "<scale>", "</flags>", "\t<bone_rename old", "</bone_renames>",
                             "<meshes>", "<materials>"}) {
    std::string document = kDocument;
    for (size_t at = 0; (at = document.find(marker)) != std::string::npos;) document[at + 1] = '#';
    EXPECT_EQ(Rewrite(job, "Body=Skin", document), "no document") << marker;
  }
}

/// A converted triangle, ready for its final settings.
struct Converted : TestHost {
  Converted() {
    Character model;
    model.Triangle("Body");
    EXPECT_EQ(Convert(model.Text()), ts3d::ConversionResult::Success);
    lines.clear();
  }
  FinishResult Finish(float scale = 0, const std::string& meshList = "") {
    return ApplyFinalSettings(job, {ModelPath("model.fbx"), scale, meshList});
  }
};

TEST(FinalSettings, AddTheDocumentAgainAndDeleteIt) {
  Converted host;
  EXPECT_EQ(host.Finish(150), FinishResult::Success);
  EXPECT_THAT(host.lines,
              ElementsAre("Updating CZP File with Final Settings", "Successfully created CZP File"));
  const auto package = host.ReadPackage();
  EXPECT_EQ(package.Names(), "skeleton.csf model.xfg Body.cmf Body.xrf model.xfg");
  EXPECT_THAT(package["model.xfg"], HasSubstr("\t<scale>1.500000</scale>\n<flags>\n"));
  EXPECT_THAT(package.Members()[1].bytes, HasSubstr("\t<scale>1.0</scale>\n<flags>\n"));
  EXPECT_EQ(host.FileNames(), "model.czp model.fbx");
  EXPECT_EQ(host.Finish(), FinishResult::DocumentUnreadable);
}

TEST(FinalSettings, ScaleByAHundredthOrNotAtAll) {
  const std::pair<float, const char*> cases[] = {
      {0.0f, "1.000000"}, {-5.0f, "1.000000"}, {150.0f, "1.500000"}, {50.0f, "0.500000"}, {0.5f, "0.005000"}};
  for (const auto& [percent, scale] : cases) {
    Converted host;
    ASSERT_EQ(host.Finish(percent), FinishResult::Success);
    EXPECT_THAT(host.ReadPackage()["model.xfg"], HasSubstr("<scale>" + std::string(scale) + "</scale>"));
  }
}

TEST(FinalSettings, LeaveADocumentWithoutMarkersAlone) {
  Converted host;
  host.folder.Write("model.xfg", "<cal_config></cal_config>");
  EXPECT_EQ(host.Finish(), FinishResult::DocumentUnreadable);
  EXPECT_THAT(host.lines,
              ElementsAre("Updating CZP File with Final Settings", ">>> FAILED TO READ .XFG File!"));
  EXPECT_EQ(host.Document(), "<cal_config></cal_config>");
  EXPECT_EQ(host.ReadPackage().Count("model.xfg"), 1u);
}

TEST(FinalSettings, LeaveADocumentThatCannotBeReplacedAlone) {
  Converted host;
  const std::string before = host.Document();
  std::filesystem::create_directory(host.folder.Path("model.xfg.new"));
  EXPECT_EQ(host.Finish(), FinishResult::DocumentUnwritable);
  EXPECT_THAT(host.lines,
              ElementsAre("Updating CZP File with Final Settings", ">>> FAILED TO WRITE .XFG File!"));
  EXPECT_EQ(host.Document(), before);
}

TEST(FinalSettings, KeepTheNewDocumentWhenThereIsNoPackage) {
  Converted host;
  std::filesystem::remove(host.folder.Path("model.czp"));
  EXPECT_EQ(host.Finish(200), FinishResult::UpdateFailed);
  EXPECT_THAT(host.lines,
              ElementsAre("Updating CZP File with Final Settings", ">>> Failed to Open CZP File"));
  EXPECT_THAT(host.Document(), HasSubstr("<scale>2.000000</scale>"));
  EXPECT_EQ(host.FileNames(), "model.fbx model.xfg");
}

TEST(FinalSettings, NeedNoCallback) {
  Converted host;
  host.job.statusCallback = nullptr;
  EXPECT_EQ(host.Finish(), FinishResult::Success);
  EXPECT_EQ(host.Finish(), FinishResult::DocumentUnreadable);
}

}  // namespace
