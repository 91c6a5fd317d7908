// SPDX-License-Identifier: MIT
//
// Models that a process of its own translates: what may go wrong with the files, the process and its stream.
#include <gmock/gmock.h>

#include <filesystem>
#include <map>
#include <regex>

#include "mesh/claims/weigh_claims.h"
#include "platform/helper_process.h"
#include "scene/gltf/open_translated.h"
#include "scene/model/mesh.h"
#include "scene/other/model_kinds.h"
#include "scene/other/translate.h"
#include "scene/other/utf16_text.h"
#include "scene/sdk_manager.h"
#include "support/check_scene.h"
#include "support/other_model.h"
#include "translator/b3d_bones.h"
#include "translator/collada_joints.h"
#include "translator/own_joints.h"
#include "translator/texture_sets.h"
#include "translator/trim_texts.h"

namespace {

using support::OtherModel;
using testing::HasSubstr;
namespace other = scene::other;

/// Why `stream` is refused.
std::string Refusal(const std::string& stream) {
  try {
    const scene::translation::Answer translation = scene::translation::ReadStream(stream);
    scene::KFbxImportStatus status;
    scene::gltf::OpenTranslated(translation.Data(), nullptr, {}, "", nullptr, status);
    return status.text;
  } catch (const scene::translation::Fault& fault) {
    return fault.what();
  }
}

TEST(TranslatedStream, IsCheckedLikeAFile) {
  const std::string start = "translated model 1\n";
  EXPECT_THAT(Refusal(""), HasSubstr("cut off"));
  EXPECT_THAT(Refusal("translated model 2\ndata\n"), HasSubstr("another version"));
  EXPECT_THAT(Refusal(start + "file a.mtl\n"), HasSubstr("cut off"));
  EXPECT_THAT(Refusal(start + "rm -rf\ndata\n"), HasSubstr("damaged"));
  EXPECT_EQ(Refusal(start + "error its number 3 is none\n"), "its number 3 is none");
  EXPECT_THAT(Refusal(start + "data\nglTF\2"), HasSubstr("cut off"));
  for (const char* lost :
       {"lost", "lost \n", "lost x hip\n", "lost -1 hip\n", "lost 99999999999999999999 hip\n", "lost 7\n"})
    EXPECT_THAT(Refusal(start + lost), testing::AnyOf(HasSubstr("damaged"), HasSubstr("cut off"))) << lost;
  const auto lost = scene::translation::ReadStream(start + "lost 7 left hand\ndata\n").lostJoints;
  ASSERT_EQ(lost.size(), 1u);
  EXPECT_EQ(lost[0].name + std::to_string(lost[0].points), "left hand7");
  EXPECT_EQ(scene::translation::ReadStream(start + "file a/b.mtl\ndata\nglTF").otherFiles,
            std::vector<std::string>{"a/b.mtl"});
}

TEST(HelperProcess, EndsWithAReasonWhateverItDoes) {
  const auto run = [](const char* script, std::string_view input = {}) {
    return platform::RunHelper("/bin/sh", {"-c", script}, input, 1000, [] {});
  };
  const std::string large(1 << 20, 'x');
  EXPECT_EQ(run("cat", "text").output, "text");
  EXPECT_THAT(run("kill -SEGV $$").problem, HasSubstr("crash"));
  EXPECT_THAT(run("ulimit -t 1; while :; do :; done").problem, HasSubstr("took longer"));
  EXPECT_THAT(run("exit 3", large).problem, HasSubstr("status 3"));
  EXPECT_THAT(run("cat >/dev/null; cat /dev/zero", large).problem, HasSubstr("more than a file of its size"));
  EXPECT_THAT(platform::RunHelper("/nowhere", {}, "", 1, [] {}).problem, HasSubstr("cannot be started"));
  EXPECT_THROW(platform::RunHelper("/bin/sleep", {"1000"}, "", 1, [] { throw std::runtime_error("enough"); }),
               std::runtime_error);
}

TEST(ModelKinds, AreKnownByTheirContent) {
  const auto kindOf = [](std::string_view head) -> std::string {
    for (const other::ModelKind& kind : other::ModelKinds()) {
      if (kind.detects(head)) return kind.name;
    }
    return "";
  };
  EXPECT_EQ(kindOf("<?xml version=\"1.0\"?>\n<COLLADA>"), "Collada");
  EXPECT_EQ(kindOf("<?xml version=\"1.0\"?>\n<svg>"), "");
  EXPECT_EQ(kindOf("// exported\nMD5Version 10"), "MD5");
  EXPECT_EQ(kindOf("// exported\nversion 1\nnodes\n"), "SMD");
  EXPECT_EQ(kindOf("BB3D\1"), "B3D");
  EXPECT_EQ(kindOf(std::string_view("PMX \0\0\0\x40\b", 9)), "PMX");
  EXPECT_EQ(kindOf("PMX ray"), "");
  EXPECT_EQ(kindOf("# made by hand\n\nmtllib a.mtl\n"), "OBJ");
  EXPECT_EQ(kindOf("just some text\n"), "");
  std::string stl(84 + 50, '\0');
  EXPECT_EQ(kindOf(stl), "") << "no triangles";
  stl[80] = 1;
  EXPECT_EQ(kindOf(stl), "STL");
  stl[84 + 3] = 0x7f;
  EXPECT_EQ(kindOf(stl), "") << "a normal that is too long";
  EXPECT_EQ(kindOf(std::string(4096, ' ')), "") << "what text is as numbers is tiny";
  std::string wide(4096, '\0');
  for (size_t i = 0; i < wide.size(); i += 2) wide[i] = 'a';
  EXPECT_EQ(kindOf(wide), "");
  EXPECT_EQ(other::ColladaUnit("<asset><unit name='inch' meter='0.0254'/>"), 0.0254);
  EXPECT_EQ(other::ColladaUnit("<unit name=\"centimeter\" meter=\"0.01\"/>"), 0.01);
  EXPECT_EQ(other::ColladaUnit("<unit name='half a meter'\n meter = '0.5'/>"), 0.5);
  EXPECT_EQ(other::ColladaUnit("<unit meter=\"-1\"/>"), 1.0);
  EXPECT_EQ(other::ColladaUnit("<unit meter"), 1.0);
}

TEST(ColladaJoints, AreTakenFromTheText) {
  EXPECT_EQ(translator::FindColladaJoints("<node id=\"A_hip\" name=\"hip\" type=\"JOINT\">"
                                          "<node type='JOINT' id='A_leg'/><node name=\"hat\" type=\"NODE\"/>"
                                          "<node name=\"cut\" type=\"JOINT\" id=\""),
            (std::set<std::string>{"A_hip", "hip", "A_leg", "cut"}));
}

std::string Chunk(const std::string& kind, const std::string& content) {
  std::string size;
  for (unsigned shift = 0; shift < 32; shift += 8) size += static_cast<char>(content.size() >> shift & 0xff);
  return kind + size + content;
}

std::string B3dNode(const std::string& name, const std::string& content) {
  return Chunk("NODE", name + std::string(1 + 40, '\0') + content);
}

TEST(B3dBones, AreTakenFromTheirChunks) {
  const std::string tree = B3dNode(
      "mesh", B3dNode("foot", B3dNode("toe", "") + Chunk("BONE", "")) +
                  B3dNode("hip", Chunk("BONE", "") + B3dNode("hand", Chunk("KEYS", "12"))) +
                  B3dNode("hat", "") + B3dNode("leg", Chunk("KEYS", "BONE") + Chunk("BONE", "weights.")));
  const std::string file = Chunk("BB3D", std::string(4, '\1') + Chunk("TEXS", "NODE") + tree);
  EXPECT_EQ(translator::FindB3dBones(file), (std::set<std::string>{"foot", "hip", "leg"}));
  for (size_t size = 0; size < file.size(); ++size) translator::FindB3dBones(file.substr(0, size));
}

TEST(TrimTexts, LeavesMarkupAsItIs) {
  EXPECT_EQ(translator::TrimTexts(
                " <?xml a='>' ?>\n<a b=' > '>\n 1 \t2 <!-- it's > --> c\n</a ><![CDATA[ <]> ]]> "),
            "<?xml a='>' ?><a b=' > '>1 \t2<!-- it's > -->c</a ><![CDATA[ <]> ]]>");
  for (const char* cut : {"<a b='", "<!-- ", "<a", "<", " ", ""}) {
    const std::string trimmed = translator::TrimTexts(cut);
    EXPECT_EQ(trimmed, *cut == ' ' ? "" : cut);
  }
}

std::string AsUtf16(std::string_view text) {
  std::string wide = "\xff\xfe";
  for (const char c : text) wide += {c, '\0'};
  return wide;
}

TEST(Utf16, BecomesUtf8) {
  using namespace std::string_view_literals;
  EXPECT_EQ(other::FromUtf16("v 0"), std::nullopt);
  EXPECT_EQ(other::FromUtf16(AsUtf16("v 0\n")), "v 0\n");
  EXPECT_EQ(other::FromUtf16("\xfe\xff\0a\0\xe4\x20\xac\xd8\x3d\xde\0"sv), "a\u00e4\u20ac\U0001f600");
  EXPECT_EQ(other::FromUtf16("\xff\xfe\x3d\xd8"
                             "a\0b"sv),
            "\ufffda")
      << "half a character, and half a number";
}

TEST(ColladaSets, OfTexturesAreNumbered) {
  const std::string bound =
      "<bind_vertex_input semantic='UV.002' input_semantic='TEXCOORD' input_set='1'/>"
      "<bind_vertex_input input_semantic=\"TEXCOORD\" semantic=\"7\"/>"
      "<bind_vertex_input semantic='COL' input_semantic='COLOR' input_set='2'/>";
  EXPECT_EQ(
      translator::WithNumberedSets("<texture texture='UV.002' texcoord='UV.002'/><texture texcoord=\"7\"/>"
                                   "<texture texcoord='COL'/><texture texcoord='" +
                                   bound),
      "<texture texture='UV.002' texcoord='1'/><texture texcoord=\"0\"/>"
      "<texture texcoord='COL'/><texture texcoord='" +
          bound);
}

TEST(ColladaJoints, OfSeveralSkeletonsKeepApart) {
  const auto file = [](const std::string& first, const std::string& second) {
    return "<controller id='s'><Name_array>tip " + second +
           "</Name_array></controller><controller id='t'><Name_array>" + first +
           " none</Name_array></controller><library_visual_scenes><node id='A'><node id='A_hip' sid='" +
           first +
           "' type='JOINT'><node id='A_tip' sid='tip'/></node></node><node id='B'><node id='B_hip' sid='" +
           second +
           "' type='JOINT'/></node><instance_controller "
           "url='#s'><skeleton>#B</skeleton></instance_controller>"
           "<instance_controller url='#t'><skeleton>#A_hip</skeleton></instance_controller>";
  };
  EXPECT_EQ(translator::WithOwnJoints(file("hip", "hip")), file("A_hip", "B_hip"));
  EXPECT_EQ(translator::WithOwnJoints(file("hip", "hips")), file("hip", "hips"));
}

TEST_F(OtherModel, IsReadAsExportersWriteIt) {
  const std::string start =
      "<?xml version='1.0'?><COLLADA xmlns='http://www.collada.org/2005/11/COLLADASchema' version='1.4.1'>"
      "<library_effects><effect id='e'><profile_COMMON><technique sid='t'><lambert><diffuse>"
      "<color>  1 0 0 1  </color></diffuse></lambert></technique></profile_COMMON></effect></library_effects>"
      "<library_materials><material id='m'><instance_effect url='#e'/></material></library_materials>"
      "<library_geometries><geometry id='g'><mesh><source id='s'><float_array id='f' count='9'>\n0 0 0 1 0 "
      "0\n"
      "0 1 0\n</float_array><technique_common><accessor source='#f' count='3' stride='3'/></technique_common>"
      "</source><vertices id='v'><input semantic='POSITION' source='#s'/></vertices><triangles count='1' "
      "material='x'><input semantic='VERTEX' source='#v' offset='0'/><p> 0 1 2 "
      "</p></triangles></mesh></geometry>"
      "</library_geometries><library_visual_scenes><visual_scene id='w'><node id='b' type='JOINT'>"
      "<matrix>\n1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n</matrix><node id='c' type='JOINT'/></node>";
  const std::string node =
      "<node id='n'><instance_geometry url='#g'><bind_material><technique_common><instance_material "
      "symbol='x' "
      "target='#m'/></technique_common></bind_material></instance_geometry></node>";
  const std::string end =
      "</visual_scene></library_visual_scenes><scene><instance_visual_scene url='#w'/></scene></COLLADA>";
  for (const std::string& text : {start + node + end, AsUtf16(start + node + end)}) {
    folder_.Write("a.dae", text);
    EXPECT_EQ(Load("a.dae"), "");
    EXPECT_EQ(meshes_, 1u);
  }
}

TEST_F(OtherModel, ReadsFilesBelowItsFolderOnly) {
  const std::string triangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl a\nf 1 2 3\n";
  std::filesystem::create_directories(folder_.Path("model/sub"));
  for (const char* name : {"out.mtl", "model/in.mtl", "model/sub/in.mtl"}) folder_.Write(name, "newmtl a\n");
  std::filesystem::create_symlink(folder_.Path("out.mtl"), folder_.Path("model/link.mtl"));
  std::filesystem::create_symlink(folder_.Path(), folder_.Path("model/up"));
  for (const auto& [library, files] : std::map<std::string, std::string>{{"in.mtl", "in.mtl "},
                                                                         {"sub/in.mtl", "in.mtl "},
                                                                         {"sub\\in.mtl", "in.mtl "},
                                                                         {"../out.mtl", ""},
                                                                         {"sub/../../out.mtl", ""},
                                                                         {"link.mtl", ""},
                                                                         {"up/out.mtl", ""},
                                                                         {"sub", ""},
                                                                         {folder_.Path("out.mtl"), ""},
                                                                         {"file:///etc/passwd", ""}}) {
    folder_.Write("model/model.obj", "mtllib " + library + "\n" + triangle);
    EXPECT_EQ(Load("model/model.obj"), files) << library;
  }
}

/// As Blender writes it: an armature at z = 3, twice as large, with a bone at y = 1 that ends at y = 1.5, a hat on
/// its end, and a skinned mesh at x = 1 below the armature. All scales come first; the skin knows nothing of the armature.
constexpr const char* kBlenderFile = R"(<?xml version="1.0" encoding="utf-8"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<asset><contributor><authoring_tool>Blender 3.4.1</authoring_tool></contributor>
<unit name="meter" meter="1"/><up_axis>Y_UP</up_axis></asset>
<library_geometries><geometry id="g" name="g"><mesh>
<source id="p"><float_array id="pa" count="9">0 0 0 1 0 0 0 1 0</float_array><technique_common>
<accessor source="#pa" count="3" stride="3"><param name="X" type="float"/><param name="Y" type="float"/>
<param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles>
</mesh></geometry></library_geometries>
<library_controllers><controller id="s" name="A"><skin source="#g">
<bind_shape_matrix>1 0 0 1 0 1 0 0 0 0 1 0 0 0 0 1</bind_shape_matrix>
<source id="j"><Name_array id="ja" count="1">hip</Name_array><technique_common>
<accessor source="#ja" count="1" stride="1"><param name="JOINT" type="name"/></accessor></technique_common></source>
<source id="i"><float_array id="ia" count="16">.5 0 0 0 0 .5 0 -1 0 0 .5 -1.5 0 0 0 1</float_array>
<technique_common><accessor source="#ia" count="1" stride="16"><param name="TRANSFORM" type="float4x4"/></accessor>
</technique_common></source>
<source id="w"><float_array id="wa" count="1">1</float_array><technique_common>
<accessor source="#wa" count="1" stride="1"><param name="WEIGHT" type="float"/></accessor></technique_common></source>
<joints><input semantic="JOINT" source="#j"/><input semantic="INV_BIND_MATRIX" source="#i"/></joints>
<vertex_weights count="3"><input semantic="JOINT" source="#j" offset="0"/>
<input semantic="WEIGHT" source="#w" offset="1"/><vcount>1 1 1</vcount><v>0 0 0 0 0 0</v></vertex_weights>
</skin></controller></library_controllers>
<library_visual_scenes><visual_scene id="S" name="S">
<node id="A" name="A" type="NODE">
<scale sid="scale">2 2 2</scale><rotate sid="rotationZ">0 0 1 0</rotate><rotate sid="rotationY">0 1 0 0</rotate>
<rotate sid="rotationX">1 0 0 0</rotate><translate sid="location">0 0 3</translate>
<node id="A_hip" name="<"hip" & co>" sid="hip" type="JOINT">
<matrix sid="transform">1 0 0 0 0 1 0 1 0 0 1 0 0 0 0 1</matrix>
<node id="hat" name="hat" type="NODE"><matrix sid="transform">1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</matrix>
<instance_geometry url="#g"/></node>
<extra><technique profile="blender"><tip_x sid="tip_x" type="float">0</tip_x>
<tip_y sid="tip_y" type="float">0.5</tip_y><tip_z sid="tip_z" type="float">0</tip_z></technique></extra>
</node>
<node id="body" name="&lt;body&gt;" type="NODE"><matrix sid="transform">1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</matrix>
<instance_controller url="#s"><skeleton>#A_hip</skeleton></instance_controller></node>
</node></visual_scene></library_visual_scenes>
<scene><instance_visual_scene url="#S"/></scene></COLLADA>
)";

TEST_F(OtherModel, OfBlenderStandsAsItsExporterMeansIt) {
  folder_.Write("a.dae", kBlenderFile);
  ASSERT_EQ(Load("a.dae"), "");
  const scene::KFbxNode* hip = support::FindNode(*scene_, "<\"hip\" & co>");
  ASSERT_TRUE(hip && hip->IsSkeleton());
  EXPECT_THAT(support::Xyz(hip->GetGlobalFromDefaultTake().GetT()), testing::ElementsAre(0, 200, 300));
  EXPECT_THAT(PointsOf("<body>"), testing::ElementsAre(200, 0, 300, 400, 0, 300, 200, 200, 300));
  EXPECT_THAT(PointsOf("hat"), testing::ElementsAre(0, 300, 300, 200, 300, 300, 0, 500, 300));
}

void Replace(const std::string& from, const std::string& to, std::string& text) {
  text.replace(text.find(from), from.size(), to);
}

TEST_F(OtherModel, OfBlenderEndsBonesWhereTheNextOneBegins) {
  std::string file = kBlenderFile;
  Replace("Y_UP", "Z_UP", file);
  // A bone at the tail of the hip, which says so, and one aside that does not.
  const auto bone = [](const std::string& name, const char* x, const char* y, const char* connected) {
    return "<node id=\"A_" + name + "\" name=\"" + name + "\" sid=\"" + name +
           "\" type=\"JOINT\">\n<matrix sid=\"transform\">1 0 0 " + x + " 0 1 0 " + y +
           " 0 0 1 0 0 0 0 1</matrix>\n<extra><technique profile=\"blender\">" + connected +
           "<tip_x sid=\"tip_x\" type=\"float\">0</tip_x>\n<tip_y sid=\"tip_y\" type=\"float\">9</tip_y>\n"
           "<tip_z sid=\"tip_z\" type=\"float\">0</tip_z></technique></extra>\n</node>\n";
  };
  const std::string next = "<node id=\"hat\"", cameras = "<library_controllers>";
  Replace(
      cameras,
      "<library_cameras><camera id=\"c\"><optics><technique_common><perspective><xfov>40</xfov></perspective>"
      "</technique_common></optics></camera></library_cameras>" +
          cameras,
      file);
  Replace(next,
          "<node id=\"view\" name=\"view\" type=\"NODE\">\n<instance_camera url=\"#c\"/>\n</node>\n" + next,
          file);
  Replace(next,
          bone("chest", "0.25", "0.75", "<connect sid=\"connect\" type=\"bool\">1</connect>\n") +
              bone("arm", "4", "4", "<connect sid=\"connect\" type=\"bool\">0</connect>\n") + next,
          file);
  folder_.Write("a.dae", file);
  ASSERT_EQ(Load("a.dae"), "");
  EXPECT_EQ(support::ChildNames(*support::FindNode(*scene_, "<\"hip\" & co>")), "chest arm")
      << "although they hold nothing";
  // Z was up: (x, y, z) stands at (x, z, -y).
  const scene::KFbxNode& hip = *support::FindNode(*scene_, "<\"hip\" & co>");
  EXPECT_THAT(support::Xyz(hip.GetGlobalFromDefaultTake().GetT()),
              testing::Pointwise(testing::DoubleNear(1e-3), {0., 300., -200.}));
  EXPECT_THAT(PointsOf("<body>"), testing::Pointwise(testing::DoubleNear(1e-3),
                                                     {200., 300., 0., 400., 300., 0., 200., 300., -200.}));
  EXPECT_THAT(PointsOf("hat"), testing::Pointwise(testing::DoubleNear(1e-3),
                                                  {50., 300., -350., 250., 300., -350., 50., 300., -550.}));
}

TEST_F(OtherModel, OfTwinsKeepsTheSkinsOnTheirOwnBones) {
  std::string file = kBlenderFile;
  const auto addTwin = [&](const std::string& begin, const std::string& end) {
    const size_t at = file.find(begin), size = file.find(end, at) + end.size() - at;
    std::string twin = std::regex_replace(
        file.substr(at, size), std::regex("([\"#])(s|ja?|ia?|wa?|A_hip|A|hat|body)([\"<])"), "$1$2_2$3");
    file.insert(at + size, twin);
  };
  addTwin("<controller ", "</controller>");
  addTwin("<node id=\"A\"", "</instance_controller></node>\n</node>");
  folder_.Write("a.dae", file);
  ASSERT_EQ(Load("a.dae"), "");
  EXPECT_EQ(meshes_, 4u);
  for (const auto& [body, hip] :
       {std::pair("<body>", "<\"hip\" & co>"), {"<body>.001", "<\"hip\" & co>.001"}}) {
    const scene::KFbxSkin& skin = *support::FindNode(*scene_, body)->GetMesh()->GetSkin(0);
    EXPECT_EQ(skin.GetCluster(0)->GetLink(), support::FindNode(*scene_, hip));
  }
}

TEST_F(OtherModel, HasItsJointsWithoutASkinAndWithoutAMesh) {
  std::string file = kBlenderFile;
  const auto replace = [&](const std::string& from, const std::string& to) { Replace(from, to, file); };
  replace("instance_controller url=\"#s\"", "instance_geometry url=\"#g\"");
  replace("<skeleton>#A_hip</skeleton></instance_controller>", "</instance_geometry>");
  folder_.Write("a.dae", file);
  ASSERT_EQ(Load("a.dae"), "");
  EXPECT_EQ(support::ChildNames(*scene_->GetRootNode()), "<\"hip\" & co> hat <body>");
  for (int i = 0; i < 2; ++i) replace("<instance_geometry url=\"#g\"", "<extra");
  replace("</instance_geometry>", "</extra>");
  folder_.Write("a.dae", file);
  ASSERT_EQ(Load("a.dae"), "");
  EXPECT_EQ(support::ChildNames(*scene_->GetRootNode()), "<\"hip\" & co>") << "bones alone are no mesh";
}

TEST_F(OtherModel, IsRefusedWithItsReason) {
  folder_.Write("a.dae", "<?xml version=\"1.0\"?><COLLADA><library_geometries>");
  EXPECT_THAT(Load("a.dae"), testing::Not(""));
  folder_.Write(
      "many.ply",
      "ply\nformat ascii 1.0\nelement vertex 4000000000\nproperty float x\nproperty float y\n"
      "property float z\nelement face 1\nproperty list uchar int vertex_index\nend_header\n0 0 0\n");
  EXPECT_THAT(Load("many.ply"), testing::Not(""));
  // Each level of nesting is a call of the library.
  std::string deep = "xof 0302txt 0032\n";
  for (int i = 0; i < 300'000; ++i) deep += "Frame a{";
  folder_.Write("deep.x", deep);
  EXPECT_THAT(Load("deep.x"), testing::Not(""));
  // Half a megabyte of text, and room for less than that.
  std::string large;
  for (int i = 0; i < 100'000; ++i) large += "v 1 2 3\n";
#if !defined(__SANITIZE_ADDRESS__)
  const platform::HelperAnswer poor = platform::RunHelper(platform::FindOwnPart("translate_model"),
                                                          {"obj", "", "1", "20"}, large, 1000, [] {});
  EXPECT_THAT(poor.output, HasSubstr("it asks for more memory than a file of its size may have"));
#endif
  folder_.Write("solid.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 nan\n");
  Load("solid.stl");
}

}  // namespace
