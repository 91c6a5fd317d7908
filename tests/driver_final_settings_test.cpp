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
using ts3d::ConversionResult;

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

constexpr const char* kTemplates = R"(</materials>


<morphs>
<!--
	 <morphable base="[friendly_mesh_name]">
	 	 <target name="[morph name]" file="[morph_mesh.cmf]"/>
	 </morphable>
-->
</morphs>
<switches>
<!--
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

</cal_config>)";

std::string Rewrite(const ts3d::ConversionJob& job, const std::string& meshList = "",
                    const std::string& document = kDocument) {
  return ts3d::RewriteDocument(document, job, meshList).value_or("no document");
}

size_t CountOf(std::string_view part, std::string_view text) {
  size_t count = 0;
  for (size_t at = 0; (at = text.find(part, at)) != std::string_view::npos; ++at) ++count;
  return count;
}

TEST(RewrittenDocument, NamesMeshesAndMakesSwitchesOfThoseThatAreMarked) {
  const ts3d::ConversionJob job;
  const std::string document = Rewrite(job, "Body=`A & B|Hat=~\"Cap\"");
  EXPECT_THAT(document, HasSubstr(R"(<meshes>
     <mesh name="Body" file="Body.cmf"/>
     <mesh name="Hat" file="Hat.cmf"/>
</meshes>

<materials>
	<material_file name="A &amp; B" threadID="151">Body.xrf</material_file>
	<material_file name="&quot;Cap&quot;" threadID="152">Hat.xrf</material_file>
</materials>
)"));
  EXPECT_THAT(document, HasSubstr(R"(<switches>
     <switch name="A &amp; B">
          <case name="absent">
          </case>
          <case name="present">
               <mesh_active name="Body"/>
          </case>
     </switch>
     <switch name="&quot;Cap&quot;">
          <case name="present">
               <mesh_active name="Hat"/>
          </case>
          <case name="absent">
          </case>
     </switch>
)"));
  EXPECT_EQ(CountOf("<switch name", document), 3u) << "with the template";
  EXPECT_THAT(Rewrite(job, "Ha=Cap"), HasSubstr("<material_file name=\"Hat\" threadID"))
      << "whose name begins so";
  EXPECT_THAT(document, HasSubstr("<flags>\n\t<invert_v/>\n\t<rotation x=\"0\" y=\"0\"/>\n</flags>\n"));
  EXPECT_THAT(Rewrite(job, "Ghost=<x>|no name"),
              HasSubstr("     <mesh name=\"Ghost\" file=\"Ghost.cmf\"/>\n</meshes>"));
  const std::string second = Rewrite(job, "Body=Fur", document);
  EXPECT_EQ(CountOf("<morphs>", second), 1u);
  EXPECT_EQ(CountOf("<switches>", second), 2u);
  const std::string plain = Rewrite(job);
  EXPECT_THAT(plain, HasSubstr("backfacing=\"both\"/>"));
  EXPECT_TRUE(plain.ends_with(kTemplates)) << plain;
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
  Converted() : TestHost(Triangle()) { lines.clear(); }
  static Character Triangle() {
    Character model;
    model.Triangle("Body");
    return model;
  }
  ConversionResult Finish(float scale = 0, const std::string& meshList = "") {
    return ApplyFinalSettings(job, {ModelPath("model.fbx"), scale, meshList});
  }
};

TEST(FinalSettings, AddTheDocumentAgainAndDeleteIt) {
  Converted host;
  EXPECT_EQ(host.Finish(150), ConversionResult::Success);
  EXPECT_THAT(host.lines,
              ElementsAre("Updating CZP File with Final Settings", "Successfully created CZP File"));
  const auto package = host.ReadPackage();
  EXPECT_EQ(package.Names(), "skeleton.csf model.xfg Body.cmf Body.xrf model.xfg");
  EXPECT_THAT(package["model.xfg"], HasSubstr("\t<scale>1.500000</scale>\n<flags>\n"));
  EXPECT_THAT(package.Members()[1].bytes, HasSubstr("\t<scale>1.0</scale>\n<flags>\n"));
  EXPECT_EQ(host.FileNames(), "model.czp model.fbx");
  EXPECT_EQ(host.Finish(), ConversionResult::DocumentUnreadable);
}

TEST(FinalSettings, MayBeAskedForByTheNamesOfDocumentAndPackageAndByABareName) {
  for (const char* name : {"model.xfg", "model.czp"}) {
    Converted host;
    EXPECT_EQ(ApplyFinalSettings(host.job, {host.ModelPath(name), 0, {}}), ConversionResult::Success) << name;
  }
  Converted host;
  host.job.files.modelDirectory = host.ModelPath("elsewhere\\");
  EXPECT_EQ(ApplyFinalSettings(host.job, {"model.fbx", 0, {}}), ConversionResult::UpdateFailed);
  EXPECT_EQ(host.job.files.modelDirectory, host.ModelPath("elsewhere\\"));
  EXPECT_EQ(host.ReadPackage().Count("model.xfg"), 1u) << "no empty member";
  ts3d::ConversionJob fresh;
  EXPECT_EQ(ApplyFinalSettings(fresh, {"model.fbx", 0, {}}), ConversionResult::Success);
  EXPECT_EQ(host.ReadPackage().Count("model.xfg"), 2u);
}

TEST(FinalSettings, ScaleByAHundredthOrNotAtAll) {
  const std::pair<float, const char*> cases[] = {{-5.0f, "1.000000"}, {0.5f, "0.005000"}};
  for (const auto& [percent, scale] : cases) {
    Converted host;
    ASSERT_EQ(host.Finish(percent), ConversionResult::Success);
    EXPECT_THAT(host.ReadPackage()["model.xfg"], HasSubstr("<scale>" + std::string(scale) + "</scale>"));
  }
}

TEST(FinalSettings, ChangeDocumentAndPackageOnlyAndKeepLinksAndPermissions) {
  namespace fs = std::filesystem;
  constexpr fs::perms kPrivate = fs::perms::owner_read | fs::perms::owner_write;
  Converted host;
  const std::string real = host.folder.Path("real.xfg"), document = host.folder.Path("model.xfg");
  fs::rename(document, real);
  fs::create_symlink(real, document);
  fs::permissions(host.folder.Path("model.czp"), kPrivate);
  const std::string other = host.folder.Write("other", "somebody's");
  for (const char* name : {"model.xfg.new", "model.czp.new"}) {
    fs::create_symlink(other, host.folder.Path(name));
  }
  const std::string names = host.folder.Names();
  fs::current_path("/");  // from where the document is not deleted
  EXPECT_EQ(host.Finish(150), ConversionResult::Success);
  EXPECT_EQ(host.folder.Names(), names);
  EXPECT_EQ(support::ReadWholeFile(other), "somebody's");
  EXPECT_TRUE(fs::is_symlink(document));
  EXPECT_THAT(support::ReadWholeFile(real), HasSubstr("<scale>1.5"));
  EXPECT_EQ(fs::status(host.folder.Path("model.czp")).permissions(), kPrivate);
  EXPECT_EQ(host.ReadPackage().Count("model.xfg"), 2u);
}

TEST(FinalSettings, LeaveADocumentThatCannotBeReadAlone) {
  Converted host;
  host.folder.Write("model.xfg", "<cal_config></cal_config>");
  EXPECT_EQ(host.Finish(), ConversionResult::DocumentUnreadable);
  EXPECT_EQ(host.lines.back(), ">>> FAILED TO READ .XFG File!");
  EXPECT_EQ(host.Document(), "<cal_config></cal_config>");
  EXPECT_EQ(host.ReadPackage().Count("model.xfg"), 1u);
}

}  // namespace
