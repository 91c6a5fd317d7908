// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/model/material.h"
#include "scene/model/mesh.h"
#include "support/load_scene.h"

namespace {

using support::ChildNames;
using support::FindNode;
using testing::ElementsAre;

std::unique_ptr<scene::KFbxScene> Load(const std::string& records) {
  return support::LoadSceneBytes("; FBX 5.8.0 project file\n" + records);
}

std::vector<double> Position(const scene::KFbxNode& node) {
  const scene::KFbxVector4 t = node.GetGlobalFromDefaultTake().GetT();
  return {std::round(t[0] * 1e6) / 1e6, std::round(t[1] * 1e6) / 1e6, std::round(t[2] * 1e6) / 1e6};
}

TEST(VersionFive, ParentsNameTheirChildrenAndTheRestIsBelowTheRoot) {
  const auto scene = Load(R"(
    Model: "Model::a" { Children: "Model::c", "Model::missing", "Model::b" }
    Model: "Model::b" { Type: "LimbNode" }
    Model: "Model::c" { Type: "Null" }
    Model: "Model::d" { }
    Model: "e" { Children: "f" }
    Model: "f" { Children: "e" }
    Model: "g" { Children: "g" }
  )");
  EXPECT_EQ(ChildNames(*scene->GetRootNode()), "a d");
  EXPECT_EQ(ChildNames(*FindNode(*scene, "a")), "c b");
  EXPECT_TRUE(FindNode(*scene, "b")->IsSkeleton());
  EXPECT_NE(FindNode(*scene, "c")->GetNodeAttribute(), nullptr);
  EXPECT_EQ(FindNode(*scene, "d")->GetNodeAttribute(), nullptr);
}

TEST(VersionFive, TransformsAreTheDefaultsOfChannels) {
  const auto scene = Load(R"(
    Model: "a" {
      Children: "b"
      Channel: "Transform" {
        Channel: "T" { Channel: "X" { Default: 10 } Channel: "Z" { Default: 5 } }
        Channel: "R" { Channel: "Z" { Default: 90 } }
        Channel: "S" { Channel: "X" { Default: 2 } }
      }
    }
    Model: "b" { Channel: "Transform" { Channel: "T" { Channel: "X" { Default: 1 } } } }
  )");
  EXPECT_THAT(Position(*FindNode(*scene, "a")), ElementsAre(10, 0, 5));
  // The parent doubles x and turns it to y.
  EXPECT_THAT(Position(*FindNode(*scene, "b")), ElementsAre(10, 2, 5));
}

TEST(VersionFive, TransformsMayStandInTheCurrentTake) {
  const auto scene = Load(R"(
    Model: "Model::a" { }
    Takes: {
      Current: "Take 2"
      Take: "Take 1" { Model: "Model::a" { Channel: "Transform" { Channel: "T" { Channel: "X" { Default: 1 } } } } }
      Take: "Take 2" { Model: "Model::a" { Channel: "Transform" { Channel: "T" { Channel: "X" { Default: 2 } } } } }
    }
  )");
  EXPECT_THAT(Position(*FindNode(*scene, "a")), ElementsAre(2, 0, 0));
}

TEST(VersionFive, TheRootModelIsTheRootAndTurnsItsChildren) {
  const auto scene = Load(R"(
    Model: "Fbx_Root" { Children: "a"
      Channel: "Transform" { Channel: "R" { Channel: "X" { Default: -90 } } } }
    Model: "a" { Channel: "Transform" { Channel: "T" { Channel: "Z" { Default: 3 } } } }
  )");
  EXPECT_EQ(ChildNames(*scene->GetRootNode()), "a");
  EXPECT_THAT(Position(*FindNode(*scene, "a")), ElementsAre(0, 3, 0));
}

TEST(VersionFive, AModelHoldsItsMeshMaterialsAndSkin) {
  const auto scene = Load(R"(
    Model: "bone" { Type: "LimbNode" }
    Model: "body" {
      Vertices: 0,0,0,1,0,0,1,1,0,0,1,0
      PolygonVertexIndex: 0,1,-3,0,2,-4
      GeometryUVInfo: {
        MappingInformationType: "ByPolygon"
        TextureUV: 0,0,1,0,1,1
        TextureUVVerticeIndex: 0,1,2,0,2,1
      }
      MaterialAssignation: "ByPolygon"
      Materials: 1,0
      Material: "Material::red" {
        ShadingModel: "phong"
        Ambient: 0.1,0.1,0.1
        Diffuse: 1,0.5,0.25
        Specular: 0.3,0.3,0.3
        Emissive: 0.4,0.4,0.4
        Shininess: 7
      }
      Material: "Material::plain" { ShadingModel: "lambert" }
      Link: "bone" {
        Indexes: 0,3
        Weights: 1,0.5
        Transform: 1,0,0,0,0,1,0,0,0,0,1,0,1,2,3,1
        TransformLink: 1,0,0,0,0,1,0,0,0,0,1,0,10,0,0,1
      }
      Link: "missing" { }
    }
  )");
  const scene::KFbxNode& body = *FindNode(*scene, "body");
  scene::KFbxMesh* mesh = body.GetMesh();
  ASSERT_NE(mesh, nullptr);
  ASSERT_EQ(mesh->GetPolygonCount(), 2);
  ASSERT_NE(mesh->GetUVs(), nullptr);
  EXPECT_EQ(mesh->GetUVs()->GetTextureUVIndex(5, 3), 1);
  ASSERT_NE(mesh->GetMaterials(), nullptr);
  EXPECT_EQ(mesh->GetMaterials()->GetMaterialIndex(0, 0), 1);
  ASSERT_EQ(body.GetMaterialCount(), 2);
  EXPECT_EQ(body.GetMaterial(1)->GetName(), "plain");
  const auto* red = dynamic_cast<scene::KFbxSurfacePhong*>(body.GetMaterial(0));
  ASSERT_NE(red, nullptr);
  EXPECT_EQ(red->ambient[0], 0.1);
  EXPECT_EQ(red->diffuse[2], 0.25);
  EXPECT_EQ(red->specular[0], 0.3);
  EXPECT_EQ(red->emissive[0], 0.4);
  EXPECT_EQ(red->shininess, 7);
  ASSERT_EQ(mesh->GetSkinCount(), 1);
  ASSERT_EQ(mesh->GetSkin(0)->GetClusterCount(), 2);
  scene::KFbxCluster& cluster = *mesh->GetSkin(0)->GetCluster(0);
  EXPECT_EQ(cluster.GetLink(), FindNode(*scene, "bone"));
  EXPECT_THAT(cluster.GetControlPointIndices(), ElementsAre(0, 3));
  EXPECT_EQ(cluster.GetTransformMatrix()->GetT()[0], 11);
  EXPECT_EQ(mesh->GetSkin(0)->GetCluster(1)->GetLink(), nullptr);
}

}  // namespace
