// SPDX-License-Identifier: MIT
//
// The commands that read packages, as a person or a script runs them.
#include <gmock/gmock.h>

#include <functional>
#include <nlohmann/json.hpp>

#include "inspect/common_size.h"
#include "inspect/compare_packages.h"
#include "support/sample_actor.h"
#include "support/tool.h"

namespace {

class PackageTool : public support::Tool {
 protected:
  void WriteSample() const { folder_.Write("scout.czp", support::SamplePackage()); }
};

TEST_F(PackageTool, InspectTellsWhatIsThereAndWhatIsWrong) {
  WriteSample();
  EXPECT_EQ(Run("inspect scout.czp"), 0) << errors_;
  EXPECT_NE(output_.find("    20                    R_hand\n"), std::string::npos) << output_;
  EXPECT_NE(output_.find("\nNothing is wrong\n"), std::string::npos) << output_;

  std::filesystem::create_directory(folder_.Path("parts"));
  for (const actor::Member& member : support::SampleContents().members) {
    if (member.name != "hat.cmf") folder_.Write("parts/" + member.name, member.bytes);
  }
  folder_.Write("parts/no.txt", "");
  EXPECT_EQ(Run("inspect parts --json"), 1) << errors_;
  const auto json = nlohmann::json::parse(output_)["packages"][0];
  ASSERT_EQ(json["messages"].size(), 2u) << "the missing mesh, and the empty file";
  EXPECT_EQ(json["bones"].size(), 29u);
  EXPECT_EQ(json["meshes"].size(), 6u);
  EXPECT_EQ(json["pictures"][0]["width"], 1);
}

TEST_F(PackageTool, WhatIsNoPackageIsRefusedInOneLine) {
  folder_.Write("text.czp", "no archive");
  std::filesystem::create_directory(folder_.Path("empty"));
  for (const char* arguments : {"inspect text.czp", "export text.czp -o out.glb"}) {
    EXPECT_EQ(Run(arguments), 2) << arguments;
    EXPECT_EQ(std::count(errors_.begin(), errors_.end(), '\n'), 1) << errors_;
    const bool isJson = std::string_view(arguments).ends_with("--json");
    EXPECT_EQ(output_.find("\"readable\": false") != std::string::npos, isJson) << output_;
    EXPECT_EQ(output_.empty(), !isJson);
  }
  EXPECT_EQ(Files(), "empty text.czp");
}

TEST_F(PackageTool, DiffTellsWhatHasChangedAndNothingElse) {
  CopySample("a.fbx");
  ASSERT_EQ(Run("convert -q a.fbx"), 0);
  ASSERT_EQ(Run("convert -q a.fbx -o same --pack small"), 0);
  ASSERT_EQ(Run("convert -q a.fbx -o other --exclude backpack --rotation-y 9 --double-sided hat"), 0);
  EXPECT_EQ(Run("diff a.czp same/a.czp"), 0) << output_;
  EXPECT_EQ(Run("diff a.czp other/a.czp --picture both.png"), 1) << errors_;
  for (const char* line :
       {"\nMeshes and weights\n  - backpack_a: is gone\n", "\nDocument\n  ~ a.xfg: rotation about y 0 -> 9\n",
        "  + a.xfg: now: mesh \"hat\" of hat.cmf, seen from both sides\n"})
    EXPECT_NE(output_.find(line), std::string::npos) << output_;
  EXPECT_EQ(output_.find("Bones"), std::string::npos) << output_;
  const std::string png = support::ReadWholeFile(folder_.Path("both.png"));
  EXPECT_EQ(png.substr(16, 8), std::string("\0\0\4\0\0\0\2\0", 8)) << "1024 x 512";

  actor::PackageContents before = support::SampleContents(), after = support::SampleContents();
  actor::Actor old, changed;
  actor::Findings findings;
  std::string error;
  ASSERT_TRUE(BuildActor(before, old, findings, error) && BuildActor(after, changed, findings, error));
  // The order and what tells the writer of a picture are not seen.
  std::vector<actor::Vertex>& vertices = changed.meshes[0].vertices;
  std::reverse(vertices.begin(), vertices.end());
  for (auto& face : changed.meshes[0].faces) {
    for (int32_t& corner : face) corner = static_cast<int32_t>(vertices.size()) - 1 - corner;
    std::rotate(face.begin(), face.begin() + 1, face.end());
  }
  std::reverse(changed.meshes[0].faces.begin(), changed.meshes[0].faces.end());
  changed.pictures[0].bytes += "made by hand";
  EXPECT_TRUE(actor::ComparePackages({before, old}, {after, changed}).empty());
  std::swap(changed.meshes[0].faces[0][0], changed.meshes[0].faces[0][1]);
  EXPECT_EQ(actor::ComparePackages({before, old}, {after, changed}).at(0).code, "mesh-faces");
  changed = actor::Enlarged(old, 100);
  changed.materials = old.materials;
  changed.pictures = old.pictures;
  changed.document = old.document;
  const actor::Differences size = actor::ComparePackages({before, old}, {after, changed});
  ASSERT_EQ(size.size(), 1u);
  EXPECT_THAT(size[0].text, testing::StartsWith("100 times as large"));
  changed = old;
  changed.skeleton.bones[3].translation[0] += 1;
  changed.meshes[0].vertices[5].position[1] += 2;
  changed.meshes[0].influences[0].weight -= 0.25f;
  changed.materials[0].diffuse[0] ^= 1;
  changed.pictures[0].bytes.back() ^= 1;
  std::string codes;
  for (const actor::Difference& difference : actor::ComparePackages({before, old}, {after, changed}))
    codes += difference.code + " ";
  EXPECT_EQ(codes, "bone-moved mesh-points mesh-weights material-colour picture-pixels ");

  folder_.Write("text.czp", "no archive");
  EXPECT_EQ(Run("diff a.czp text.czp --json"), 2);
  EXPECT_NE(output_.find("\"unreadable-package\""), std::string::npos);
  EXPECT_EQ(Run("diff a.czp other/a.czp --json"), 1);
}

TEST(ComparePackages, TellsWhatEachChangeIs) {
  using actor::Actor;
  actor::PackageContents contents = support::SampleContents(), other = contents;
  const Actor old = support::SampleActor();
  const auto codesOf = [&](const std::function<void(Actor&)>& change) {
    Actor changed = old;
    change(changed);
    std::string codes;
    for (const actor::Difference& difference : actor::ComparePackages({contents, old}, {other, changed}))
      codes += difference.code + " ";
    return codes;
  };
  const std::pair<const char*, std::function<void(Actor&)>> cases[] = {
      {"",
       [](Actor& a) {
         for (float& part : a.skeleton.bones[3].rotation) part = -part;
       }},
      {"bone-turned ",
       [](Actor& a) {
         a.skeleton.bones[3].rotation = {0, 0, 0.6f, -0.8f};
       }},
      {"bone-bound ", [](Actor& a) { a.skeleton.bones[3].boneSpaceTranslation[1] += 1; }},
      {"bone-bound ",
       [](Actor& a) {
         a.skeleton.bones[3].boneSpaceRotation = {0, 0, 0.6f, -0.8f};
       }},
      {"bone-parent ", [](Actor& a) { a.skeleton.bones[3].parent = 0; }},
      {"mesh-thread ", [](Actor& a) { ++a.meshes[0].threadId; }},
      {"mesh-normals ", [](Actor& a) { a.meshes[0].vertices[0].normal[1] += 0.5f; }},
      {"mesh-uvs ", [](Actor& a) { a.meshes[0].vertices[0].uv[1] += 0.5f; }},
      {"mesh-weights ", [](Actor& a) { a.meshes[0].influences[0].bone ^= 1; }},
      {"mesh-faces ", [](Actor& a) { std::swap(a.meshes[0].faces[0][0], a.meshes[0].faces[0][1]); }},
      {"material-picture ", [](Actor& a) { a.materials[0].map = "other.tga"; }},
      {"material-shininess ", [](Actor& a) { a.materials[0].shininess += 1; }},
      // The rows of a picture from the other end.
      {"picture-pixels ", [](Actor& a) { a.pictures[0].bytes[17] ^= 0x20; }},
      {"document-scale ", [](Actor& a) { a.document.scale *= 2; }}};
  for (const auto& [codes, change] : cases) EXPECT_EQ(codesOf(change), codes);
  support::BytesOf(other, old.document.memberName) += "<!-- by hand -->";
  EXPECT_EQ(codesOf([](Actor&) {}), "document-text ");
  support::BytesOf(other, old.document.memberName) = contents.Find(old.document.memberName)->bytes;
  other.members.emplace_back().name = "notes.txt";
  EXPECT_EQ(codesOf([](Actor&) {}), "file-added ");
}

TEST_F(PackageTool, SeveralPackagesAndFoldersAreTakenByEveryCommand) {
  WriteSample();
  std::filesystem::create_directories(folder_.Path("in/deep"));
  std::filesystem::copy(folder_.Path("scout.czp"), folder_.Path("in/a b.czp"));
  std::filesystem::copy(folder_.Path("scout.czp"), folder_.Path("in/deep/a b.czp"));
  folder_.Write("in/broken.czp", "PK");
  EXPECT_EQ(Run("inspect in scout.czp missing.czp"), 2);
  EXPECT_TRUE(output_.ends_with("\n5 packages: 3 sound, 0 with problems, 2 that cannot be read\n"))
      << output_;
  EXPECT_EQ(Run("inspect in --json"), 2);
  EXPECT_EQ(nlohmann::json::parse(output_)["packages"].size(), 3u);
  EXPECT_EQ(Run("export in scout.czp -o out --format gltf"), 2);
  EXPECT_TRUE(std::filesystem::exists(folder_.Path("out/deep/a b.gltf"))) << errors_;
  EXPECT_TRUE(std::filesystem::exists(folder_.Path("out/scout.gltf"))) << errors_;
  EXPECT_EQ(Run("export in -o one.glb"), 64);
  EXPECT_EQ(Run("preview in --size 64 -o shots"), 2);
  EXPECT_TRUE(Printed("in/broken.czp: error: ")) << errors_;
  EXPECT_EQ(Files("shots") + "; " + Files("shots/deep"), "a b.png contact-sheet.html deep; a b.png");
  const std::string sheet = support::ReadWholeFile(folder_.Path("shots/contact-sheet.html"));
  EXPECT_NE(sheet.find("src=\"deep/a%20b.png\""), std::string::npos) << sheet;
  EXPECT_EQ(Run("repack in scout.czp"), 2);
  EXPECT_EQ(std::count(output_.begin(), output_.end(), '\n'), 3) << output_;
}

TEST_F(PackageTool, ExportWritesAllFilesOrNone) {
  WriteSample();
  EXPECT_EQ(Run("export scout.czp -o a.glb"), 0) << errors_;
  EXPECT_TRUE(support::ReadWholeFile(folder_.Path("a.glb")).starts_with("glTF"));
  EXPECT_EQ(Run("export scout.czp -o a.obj"), 0) << errors_;
  EXPECT_EQ(Files(), "a.glb a.mtl a.obj a_cloth.png a_metal.png a_skin.png scout.czp");
  EXPECT_TRUE(support::ReadWholeFile(folder_.Path("a_skin.png")).starts_with("\x89PNG"));

  std::filesystem::create_directory(folder_.Path("b.glb"));
  EXPECT_EQ(Run("export scout.czp -o b.glb"), 3);
  EXPECT_EQ(Run("export scout.czp -o none/b.glb"), 3);
  std::filesystem::create_directory(folder_.Path("c.obj"));
  folder_.Write("c.mtl", "mine");
  EXPECT_EQ(Run("export scout.czp -o c.obj"), 3);
  EXPECT_EQ(support::ReadWholeFile(folder_.Path("c.mtl")), "mine");
  EXPECT_EQ(Run("export scout.czp -o b.fbx"), 64);
  EXPECT_EQ(Files(), "a.glb a.mtl a.obj a_cloth.png a_metal.png a_skin.png b.glb c.mtl c.obj scout.czp");
}

}  // namespace
