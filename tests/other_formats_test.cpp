// SPDX-License-Identifier: MIT
//
// Models that a process of its own translates: what may go wrong with the files, the process and its stream.
#include <gmock/gmock.h>

#include <filesystem>
#include <map>

#include "mesh/claims/weigh_claims.h"
#include "platform/helper_process.h"
#include "scene/gltf/open_translated.h"
#include "scene/other/model_kinds.h"
#include "scene/other/translate.h"
#include "scene/sdk_manager.h"
#include "support/temp_folder.h"
#include "translator/collada_joints.h"

namespace {

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
  EXPECT_EQ(kindOf("# made by hand\n\nmtllib a.mtl\n"), "OBJ");
  EXPECT_EQ(kindOf("just some text\n"), "");
  std::string stl(84 + 50, '\0');
  EXPECT_EQ(kindOf(stl), "") << "no triangles";
  stl[80] = 1;
  EXPECT_EQ(kindOf(stl), "STL");
  stl[84 + 3] = 0x7f;
  EXPECT_EQ(kindOf(stl), "") << "a normal that is too long";
  EXPECT_EQ(other::ColladaUnit("<asset><unit name='inch' meter='0.0254'/>"), 0.0254);
  EXPECT_EQ(other::ColladaUnit("<unit meter=\"-1\"/>"), 1.0);
  EXPECT_EQ(other::ColladaUnit("<unit meter"), 1.0);
}

TEST(ColladaJoints, AreTakenFromTheText) {
  EXPECT_EQ(translator::FindColladaJoints("<node id=\"A_hip\" name=\"hip\" type=\"JOINT\">"
                                          "<node type='JOINT' id='A_leg'/><node name=\"hat\" type=\"NODE\"/>"
                                          "<node name=\"cut\" type=\"JOINT\" id=\""),
            (std::set<std::string>{"A_hip", "hip", "A_leg", "cut"}));
}

class OtherModel : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(platform::FindOwnPart("translate_model")))
      GTEST_SKIP() << "built without assimp";
  }

  /// What loading `path` ends with.
  std::string Load(const std::string& path) {
    const std::unique_ptr<scene::KFbxSdkManager, void (*)(scene::KFbxSdkManager*)> manager(
        scene::KFbxSdkManager::Create(), [](scene::KFbxSdkManager* m) { m->Destroy(); });
    scene::KFbxImporter& importer = *manager->CreateImporter(ts3d::WeighClaims);
    scene::KFbxScene& scene = *manager->CreateScene("");
    if (!importer.Initialize(folder_.Path(path)) || !importer.Import(scene))
      return importer.GetLastErrorString();
    std::string files;
    for (const scene::KString& file : scene.GetDataFiles())
      files += file.substr(file.find_last_of("\\/") + 1) + " ";
    return files;
  }

  support::TempFolder folder_;
};

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
  folder_.Write("solid.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 nan\n");
  Load("solid.stl");
}

}  // namespace
