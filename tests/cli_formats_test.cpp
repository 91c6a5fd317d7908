// SPDX-License-Identifier: MIT
//
// The sample character in other formats, as tools/export_scout.py writes them: the same package.
#include <gmock/gmock.h>

#include <cmath>
#include <map>
#include <set>

#include "actor/load_actor.h"
#include "actor/rigid_transform.h"
#include "support/tool.h"

namespace {

using support::Tool;
using testing::HasSubstr;

constexpr double kSize = 170.0, kTolerance = 1e-4;

actor::Actor Load(const std::string& package) {
  actor::Actor loaded;
  actor::Findings findings;
  std::string error;
  EXPECT_TRUE(actor::LoadActor(package, {}, loaded, findings, error)) << error;
  EXPECT_TRUE(findings.empty());
  return loaded;
}

void ExpectSameBones(const actor::Skeleton& made, const actor::Skeleton& expected) {
  ASSERT_EQ(made.bones.size(), expected.bones.size());
  for (size_t i = 0; i < made.bones.size(); ++i) {
    EXPECT_EQ(made.bones[i].name, expected.bones[i].name);
    EXPECT_EQ(made.bones[i].parent, expected.bones[i].parent);
    const auto a = BindTransform(made.bones[i]).Matrix(), b = BindTransform(expected.bones[i]).Matrix();
    for (size_t k = 0; k < 16; ++k) EXPECT_NEAR(a[k], b[k], k < 12 ? kTolerance : kTolerance * kSize);
  }
}

using WeightOfBone = std::map<int32_t, float>;

WeightOfBone WeightsOf(const actor::Mesh& mesh, const actor::Vertex& vertex) {
  WeightOfBone weights;
  for (uint32_t i = 0; i < vertex.influenceCount; ++i) {
    const actor::Influence& influence = mesh.influences[vertex.firstInfluence + i];
    if (influence.weight > kTolerance) weights[influence.bone] += influence.weight;
  }
  return weights;
}

template <size_t N>
bool IsNear(const std::array<float, N>& a, const std::array<float, N>& b, double tolerance) {
  for (size_t i = 0; i < N; ++i) {
    if (std::abs(a[i] - b[i]) > tolerance) return false;
  }
  return true;
}

/// Whether `mesh` has a vertex of the place, the direction, the coordinates and the weights of `vertex`.
bool HasVertex(const actor::Mesh& mesh, const actor::Vertex& vertex, const WeightOfBone& weights) {
  return std::any_of(mesh.vertices.begin(), mesh.vertices.end(), [&](const actor::Vertex& own) {
    if (!IsNear(own.position, vertex.position, kTolerance * kSize) ||
        !IsNear(own.normal, vertex.normal, 0.01) || !IsNear(own.uv, vertex.uv, kTolerance)) {
      return false;
    }
    const WeightOfBone ownWeights = WeightsOf(mesh, own);
    return std::equal(ownWeights.begin(), ownWeights.end(), weights.begin(), weights.end(),
                      [](const auto& a, const auto& b) {
                        return a.first == b.first && std::abs(a.second - b.second) < kTolerance;
                      });
  });
}

void ExpectSameMeshes(const std::vector<actor::Mesh>& made, const std::vector<actor::Mesh>& expected) {
  ASSERT_EQ(made.size(), expected.size());
  for (const actor::Mesh& mesh : expected) {
    const auto twin =
        std::find_if(made.begin(), made.end(), [&](const auto& m) { return m.name == mesh.name; });
    ASSERT_NE(twin, made.end()) << mesh.name;
    EXPECT_EQ(twin->faces.size(), mesh.faces.size());
    size_t missing = 0;
    for (const actor::Vertex& vertex : mesh.vertices)
      missing += !HasVertex(*twin, vertex, WeightsOf(mesh, vertex));
    EXPECT_EQ(missing, 0u) << mesh.name;
  }
}

/// Vertices of `expected` that are in none of the meshes.
size_t CountMissing(const std::vector<actor::Mesh>& made, const std::vector<actor::Mesh>& expected) {
  size_t missing = 0;
  for (const actor::Mesh& mesh : expected) {
    for (const actor::Vertex& vertex : mesh.vertices) {
      const WeightOfBone weights = WeightsOf(mesh, vertex);
      missing += std::none_of(made.begin(), made.end(),
                              [&](const actor::Mesh& own) { return HasVertex(own, vertex, weights); });
    }
  }
  return missing;
}

/// What all meshes together hold, for formats that cut them otherwise.
size_t CountFaces(const actor::Actor& actor) {
  size_t faces = 0;
  for (const actor::Mesh& mesh : actor.meshes) faces += mesh.faces.size();
  return faces;
}

class Formats : public Tool {
 protected:
  /// The sample character in every format, each in a folder of its own.
  void ExportAll() {
    ASSERT_EQ(
        std::system(
            ("python3 '" TS3D_SOURCE_FOLDER "/tools/export_scout.py' '" + folder_.Path() + "'").c_str()),
        0);
    for (const std::string name : {"glb", "gltf", "vrm", "dae", "x", "b3d", "pmx", "md5mesh", "smd"}) {
      std::filesystem::create_directory(folder_.Path(name));
      std::filesystem::copy(folder_.Path("textures"), folder_.Path(name + "/textures"));
      std::filesystem::copy_file(folder_.Path("skin.tga"), folder_.Path(name + "/skin.tga"));
      std::filesystem::rename(folder_.Path("scout." + name), folder_.Path(name + "/scout." + name));
    }
    std::filesystem::rename(folder_.Path("scout.bin"), folder_.Path("gltf/scout.bin"));
    CopySample("scout.fbx");
    ASSERT_EQ(Run("convert -q scout.fbx"), 0);
    expected_ = Load(folder_.Path("scout.czp"));
  }

  actor::Actor expected_;
};

TEST_F(Formats, ACharacterBecomesThePackageOfItsFbx) {
  ExportAll();
  for (const std::string name : {"glb", "gltf", "vrm", "dae", "x"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Run("convert --prove " + name), 0) << errors_;
    EXPECT_TRUE(
        Printed(name == "x" ? "its lengths are taken for centimetres" : "its lengths are multiplied by 100"))
        << errors_;
    EXPECT_TRUE(Printed("FBX characters have them, so it is 170 cm high") ||
                Printed("of FBX characters, so it is 170 cm high"))
        << errors_;
    const actor::Actor made = Load(folder_.Path(name + "/scout.czp"));
    ExpectSameBones(made.skeleton, expected_.skeleton);
    ExpectSameMeshes(made.meshes, expected_.meshes);
    EXPECT_EQ(made.pictures.size(), 3u);
    EXPECT_EQ(made.document.objectId, "scout");
    Run("diff scout.czp " + name + "/scout.czp");
    EXPECT_THAT(output_, testing::Not(HasSubstr("\nBones\n")));
  }
  EXPECT_EQ(Run("check vrm/scout.vrm --rename-preset vrm"), 0) << output_;
  EXPECT_THAT(output_, HasSubstr("vrm/scout.vrm: glTF 2.0, would become scout.czp with the name \"scout\""));
  EXPECT_THAT(output_, HasSubstr("Scout; by: Ada; https://example.com/free"));
  EXPECT_THAT(output_, HasSubstr("--rename \"L_foot=left foot\""));
  EXPECT_EQ(Run("convert --update gltf"), 0);
  EXPECT_TRUE(Printed("up to date") || output_.find("up to date") != std::string::npos) << errors_ << output_;
  std::filesystem::last_write_time(folder_.Path("gltf/scout.bin"),
                                   std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
  EXPECT_EQ(Run("convert --update gltf"), 0);
  EXPECT_FALSE(Printed("up to date") || output_.find("up to date") != std::string::npos)
      << errors_ << output_;
  folder_.Write("gltf/fbx2czp.json", "{\"unit\": \"inch\"}");
  EXPECT_EQ(Run("convert --prove gltf -o inches.czp"), 0) << errors_;
  EXPECT_TRUE(Printed("proven")) << errors_;
  const actor::Vector3 inch = Load(folder_.Path("inches.czp")).skeleton.bones[0].translation;
  EXPECT_NEAR(inch[1] / expected_.skeleton.bones[0].translation[1], 0.0254, kTolerance);
  EXPECT_EQ(Run("check gltf --unit mm"), 0);
  EXPECT_TRUE(Printed("multiplied by 0.1") || output_.find("multiplied by 0.1") != std::string::npos)
      << output_;
  EXPECT_EQ(Run("convert -q --unit cm glb -o cm.czp"), 0) << errors_;
  EXPECT_NE(Run("prove glb/scout.glb cm.czp"), 0) << "it is a hundred times as large";
  EXPECT_EQ(Run("prove glb/scout.glb cm.czp --unit cm --certificate cm.json"), 0) << errors_;
  EXPECT_EQ(Run("prove --verify cm.json glb/scout.glb cm.czp"), 0) << errors_;
  EXPECT_EQ(Run("preview cm.czp --model glb/scout.glb --heat-map --unit cm -o heat.png"), 0) << errors_;
  EXPECT_THAT(output_, HasSubstr("e-0"));
  EXPECT_EQ(Run("check --json gltf"), 0);
  EXPECT_EQ(Run("preview gltf/scout.gltf -o x.png"), 0) << errors_;
  EXPECT_EQ(Run("inspect glb/scout.glb"), 2);
  EXPECT_TRUE(Printed("this is a glTF file; \"fbx2czp convert\" makes a package of it")) << errors_;
  EXPECT_EQ(Run("check ."), 0) << "of the same model in several formats one is taken";
  std::filesystem::copy_file(folder_.Path("glb/scout.glb"), folder_.Path("scout.glb"));
  EXPECT_EQ(Run("check ."), 0);
  EXPECT_THAT(output_,
              testing::AllOf(HasSubstr("=== scout.fbx\n"), testing::Not(HasSubstr("=== scout.glb\n"))));
  EXPECT_EQ(Run("convert -q --force . -o out"), 0) << errors_;
}

TEST_F(Formats, JointsThatAFileDoesNotHaveAreNamed) {
  const std::string unmoved = "1.0,0.0,0.0,0.0,0.0,1.0,0.0,0.0,0.0,0.0,1.0,0.0,0.0,0.0,0.0,1.0;;";
  // Two faces share two of the tail's three points.
  folder_.Write("cat.x",
                "xof 0302txt 0032\nFrame hip { FrameTransformMatrix { " + unmoved +
                    " } }\nFrame Body {\nMesh { 4; 0.0;0.0;0.0;, 1.0;0.0;0.0;, 1.0;1.0;0.0;, 0.0;1.0;0.0;;\n"
                    "2; 3;0,1,2;, 3;0,2,3;;\n"
                    "XSkinMeshHeader { 2; 2; 2; }\nSkinWeights { \"hip\"; 2; 0,1; 1.0,0.5; " +
                    unmoved + " }\nSkinWeights { \"left tail\"; 4; 0,1,2,3; 0.0,0.5,1.0,1.0; " + unmoved +
                    " }\n} }\n");
  EXPECT_EQ(Run("check cat.x"), 1) << errors_;
  EXPECT_THAT(output_ + errors_, HasSubstr("warning: bone \"left tail\": Skins have weights for this joint"));
  EXPECT_THAT(output_ + errors_, HasSubstr("; 3 points lose them"));
  EXPECT_EQ(Run("convert cat.x"), 0) << errors_;
  EXPECT_TRUE(Printed("3 points lose them")) << errors_;
}

// Quaternions without their last number, and meshes cut by their materials alone: near, and not the same files.
TEST_F(Formats, ACharacterOfAGameBecomesTheSameCharacter) {
  ExportAll();
  for (const std::string name : {"b3d", "pmx", "md5mesh", "smd"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Run("convert --prove " + name), 0) << errors_;
    EXPECT_TRUE(Printed(name == "b3d"   ? "taken for centimetres"
                        : name == "pmx" ? "multiplied by 8 to be"
                                        : "multiplied by 2.54 to be"))
        << errors_;
    EXPECT_TRUE(Printed("so it is 170 cm high")) << errors_;
    EXPECT_FALSE(Printed("no animation")) << "the pose of a file is none";
    const actor::Actor made = Load(folder_.Path(name + "/scout.czp"));
    ASSERT_EQ(made.skeleton.bones.size(), expected_.skeleton.bones.size());
    for (size_t i = 0; i < made.skeleton.bones.size(); ++i) {
      const actor::Bone &bone = made.skeleton.bones[i], &twin = expected_.skeleton.bones[i];
      EXPECT_EQ(bone.name, twin.name);
      EXPECT_EQ(bone.parent, twin.parent);
      const auto a = BindTransform(bone).Matrix(), b = BindTransform(twin).Matrix();
      for (size_t k = 12; k < 15; ++k) EXPECT_NEAR(a[k], b[k], kTolerance * kSize) << bone.name;
    }
    EXPECT_EQ(CountFaces(made), CountFaces(expected_));
    if (name == "b3d") ExpectSameBones(made.skeleton, expected_.skeleton);
    EXPECT_EQ(CountMissing(made.meshes, expected_.meshes), 0u);
    EXPECT_EQ(made.pictures.size(), 3u);
    std::set<std::string> names;
    for (const actor::Mesh& mesh : made.meshes) names.insert(mesh.name);
    if (name == "md5mesh") {
      EXPECT_THAT(names, testing::IsSupersetOf({"cloth", "skin", "metal"})) << "as its shaders";
    }
  }
  EXPECT_EQ(Run("check dae --unit inch"), 0) << "whatever unit the file tells: its heights are its numbers";
  EXPECT_THAT(output_, HasSubstr("so it is 431 cm high"));
  EXPECT_EQ(Run("inspect smd/scout.smd"), 2);
  EXPECT_TRUE(Printed("this is a model (SMD); \"fbx2czp convert\" makes a package of it")) << errors_;
}

}  // namespace
