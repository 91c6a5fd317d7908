// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "scene/build/build_scene.h"
#include "support/check_scene.h"
#include "support/load_scene.h"

namespace {

using support::Doubles;
using support::FbxFile;
using support::FbxRecord;
using support::FbxRecords;
using support::Ints;

/// One of everything: a skinned, textured mesh of a quad and a triangle with a shape, below a bone.
FbxRecords SmallCharacter() {
  FbxFile file;
  file.Template("Model", {support::Property("Lcl Translation", {0.0, 1.0, 0.0})});
  file.Model(1, "bone", {support::Property("Lcl Rotation", {0.0, 0.0, 90.0})});
  file.Model(2, "skin");
  FbxRecord& mesh = file.Mesh(3, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2, -4, 0, 1, -5});
  mesh.Add({"LayerElementUV",
            {0},
            {{"MappingInformationType", {"ByPolygonVertex"}},
             {"ReferenceInformationType", {"IndexToDirect"}},
             Doubles("UV", {0, 0, 1, 0, 1, 1}),
             Ints("UVIndex", {0, 1, 2, 0, 1, 2, 0})}});
  mesh.Add({"LayerElementMaterial",
            {0},
            {{"MappingInformationType", {"ByPolygon"}},
             {"ReferenceInformationType", {"IndexToDirect"}},
             Ints("Materials", {0, 0})}});
  file.Skin(4);
  FbxRecord& cluster = file.Cluster(5, {0, 1, 2}, {1, 0.5, 0.25});
  cluster.Add(Doubles("Transform", support::Identity()));
  cluster.Add(Doubles("TransformLink", support::Translation(1, 2, 3)));
  file.Material(6, "cloth", "phong", {support::Property("DiffuseColor", {1.0, 0.5, 0.25})});
  file.Object("Texture", 7, "picture").Add({"FileName", {"picture.tga"}});
  file.BindPose(8, "pose").Add(
      {"PoseNode", {}, {{"Node", {int64_t{1}}}, Doubles("Matrix", support::Identity())}});
  file.Object("Deformer", 9, "", "BlendShape");
  file.Object("Deformer", 10, "", "BlendShapeChannel").Add({"DeformPercent", {50.0}});
  FbxRecord& shape = file.Object("Geometry", 11, "smile", "Shape");
  shape.Add(Ints("Indexes", {1}));
  shape.Add(Doubles("Vertices", {0, 0, 1}));
  file.Connect({{1, 0}, {2, 1}, {3, 2}, {4, 3}, {5, 4}, {1, 5}, {6, 2}, {9, 3}, {10, 9}, {11, 10}});
  file.Connect(7, 6, "DiffuseColor");
  return file.Records();
}

/// Builds and checks the scene of a file that may be damaged.
void ReadAndCheck(const std::string& bytes) {
  support::ReadResult result = support::ReadRecords(bytes);
  if (!result.error.empty()) return;
  scene::KFbxScene scene("scene");
  BuildScene(std::move(result.tree), scene);
  support::CheckScene(scene);
}

TEST(DamagedFiles, EveryByteOfABinaryFileMayBeWrong) {
  const std::string file = support::WriteBinary(SmallCharacter());
  for (size_t i = 27; i < file.size(); ++i) {
    for (const int change : {0x01, 0x80, 0xff}) {
      std::string damaged = file;
      damaged[i] = static_cast<char>(damaged[i] ^ change);
      ReadAndCheck(damaged);
      if (testing::Test::HasFailure()) FAIL() << "byte " << i << " changed by " << change;
    }
  }
}

TEST(DamagedFiles, EveryByteOfATextMayBeWrongOrTheLast) {
  const std::string file = support::WriteAscii(SmallCharacter());
  for (size_t i = 0; i < file.size(); ++i) {
    ReadAndCheck(file.substr(0, i));
    for (const char c : {'9', '-', '}', '"', ',', ';'}) {
      std::string damaged = file;
      damaged[i] = c;
      if (i >= 25) ReadAndCheck(damaged);
    }
    if (testing::Test::HasFailure()) FAIL() << "byte " << i;
  }
}

}  // namespace
