// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/model/material.h"
#include "scene/model/mesh.h"
#include "support/load_scene.h"

namespace {

using namespace std::string_literals;
using support::ChildNames;
using support::FindNode;
using testing::ElementsAre;

/// The scene of a 6.1 text with these objects and connections.
std::unique_ptr<scene::KFbxScene> Load(const std::string& objects, const std::string& connections) {
  return support::LoadSceneBytes("; FBX 6.1.0 project file\nObjects: {\n" + objects + "}\nConnections: {\n" +
                                 connections + "}\n");
}

TEST(VersionSix, NamesTieObjectsTogether) {
  const auto scene = Load(R"(
    Model: "Model::a", "Null" {
      Properties60: {
        Property: "Lcl Translation", "Lcl Translation", "A+",1,2,3
        Property: "RotationActive", "bool", "",1
      }
    }
    Model: "Model::b", "LimbNode" { }
    Model: "Model::b", "Null" { }
    Model: "Model::Producer Top", "Camera" { }
  )",
                          R"(
    Connect: "OO", "Model::b", "Model::Scene"
    Connect: "OO", "Model::a", "Model::b"
    Connect: "OO", "Model::missing", "Model::b"
  )");
  EXPECT_EQ(ChildNames(*scene->GetRootNode()), "b");
  EXPECT_EQ(ChildNames(*FindNode(*scene, "b")), "a");
  EXPECT_TRUE(FindNode(*scene, "b")->IsSkeleton()) << "the first of equal names";
  const scene::TransformProperties& transform = FindNode(*scene, "a")->GetTransformProperties();
  EXPECT_THAT(support::Xyz(transform.translation), ElementsAre(1, 2, 3));
  EXPECT_TRUE(transform.rotationActive);
}

TEST(VersionSix, ModelsOfOneNameAllGetIntoTheTree) {
  const auto scene = Load(R"(
    Model: "Model::twin", "LimbNode" { }
    Model: "Model::twin", "Null" { }
    Model: "Model::group", "Null" { }
  )",
                          R"(
    Connect: "OO", "Model::twin", "Model::Scene"
    Connect: "OO", "Model::group", "Model::Scene"
    Connect: "OO", "Model::twin", "Model::group"
  )");
  EXPECT_EQ(ChildNames(*scene->GetRootNode()), "twin group");
  EXPECT_EQ(ChildNames(*FindNode(*scene, "group")), "twin");
  EXPECT_TRUE(scene->GetRootNode()->GetChild(0)->IsSkeleton());
  EXPECT_FALSE(FindNode(*scene, "group")->GetChild(0)->IsSkeleton());
}

TEST(VersionSix, TheRootOfABinaryFileHasItsClassBehindItsName) {
  const support::FbxRecords records = {
      {"Objects", {}, {{"Model", {"a\0\1Model"s, "Null"}}}},
      {"Connections", {}, {{"Connect", {"OO", "a\0\1Model"s, "Scene\0\1Model"s}}}}};
  const auto scene = support::LoadSceneBytes(support::WriteBinary(records, {.version = 6100}));
  EXPECT_EQ(ChildNames(*scene->GetRootNode()), "a");
}

TEST(VersionSix, AModelHoldsItsMeshAndTakesTheMeshesSkin) {
  const auto scene = Load(R"(
    Model: "Model::bone", "Limb" { }
    Model: "Model::body", "Mesh" {
      Properties60: { Property: "Smile", "Number", "A",50 }
      Vertices: 0,0,0,1,0,0,1,1,0,0,1,0
      PolygonVertexIndex: 0,1,2,-4
      LayerElementUV: 0 {
        MappingInformationType: "ByPolygonVertex"
        ReferenceInformationType: "IndexToDirect"
        UV: 0,0,1,0,1,1
        UVIndex: 0,1,2,1
      }
      Layer: 0 { LayerElement: { Type: "LayerElementUV"
        TypedIndex: 0 } }
      Shape: "Smile" { Indexes: 2
        Vertices: 0,0,4 }
    }
    Deformer: "Deformer::Skin body", "Skin" { }
    Deformer: "SubDeformer::Cluster bone", "Cluster" {
      Mode: "Total1"
      Indexes: 0,1
      Weights: 1,0.5
    }
  )",
                          R"(
    Connect: "OO", "Model::body", "Model::Scene"
    Connect: "OO", "Model::bone", "Model::Scene"
    Connect: "OO", "Deformer::Skin body", "Model::body"
    Connect: "OO", "SubDeformer::Cluster bone", "Deformer::Skin body"
    Connect: "OO", "Model::bone", "SubDeformer::Cluster bone"
  )");
  scene::KFbxMesh* mesh = FindNode(*scene, "body")->GetMesh();
  ASSERT_NE(mesh, nullptr);
  EXPECT_EQ(mesh->GetControlPointsCount(), 4);
  EXPECT_THAT(mesh->GetPolygonVertices(), ElementsAre(0, 1, 2, 3));
  ASSERT_NE(mesh->GetUVs(), nullptr);
  EXPECT_EQ(mesh->GetUVs()->GetTextureUVIndex(3, 3), 1);
  ASSERT_EQ(mesh->GetSkinCount(), 1);
  ASSERT_EQ(mesh->GetSkin(0)->GetClusterCount(), 1);
  scene::KFbxCluster& cluster = *mesh->GetSkin(0)->GetCluster(0);
  EXPECT_EQ(cluster.GetLink(), FindNode(*scene, "bone"));
  EXPECT_EQ(cluster.GetLinkMode(), scene::KFbxCluster::ELinkMode::eTOTAL1);
  EXPECT_THAT(cluster.GetControlPointWeights(), ElementsAre(1, 0.5));
  ASSERT_EQ(mesh->GetShapes().size(), 1u);
  EXPECT_EQ(mesh->GetShapes()[0].factor, 0.5);
}

TEST(VersionSix, SubTypePropertiesAndPolygonsTellTheAttribute) {
  const auto scene = Load(R"(
    Model: "Model::null", "Null" { Properties60: { Property: "DefaultAttributeIndex", "int", "",0 } }
    Model: "Model::bare", "Null" { Properties60: { Property: "DefaultAttributeIndex", "int", "",-1 } }
    Model: "Model::mesh", "" { Vertices: 0,0,0
      PolygonVertexIndex: -1 }
    Model: "Model::nothing", "" { Vertices: 0,0,0 }
  )",
                          R"(
    Connect: "OO", "Model::null", "Model::Scene"
    Connect: "OO", "Model::bare", "Model::Scene"
    Connect: "OO", "Model::mesh", "Model::Scene"
    Connect: "OO", "Model::nothing", "Model::Scene"
  )");
  ASSERT_NE(FindNode(*scene, "null")->GetNodeAttribute(), nullptr);
  EXPECT_EQ(FindNode(*scene, "null")->GetNodeAttribute()->GetAttributeType(),
            scene::KFbxNodeAttribute::EAttributeType::eNULL);
  EXPECT_EQ(FindNode(*scene, "bare")->GetNodeAttribute(), nullptr);
  EXPECT_NE(FindNode(*scene, "mesh")->GetMesh(), nullptr);
  EXPECT_EQ(FindNode(*scene, "nothing")->GetNodeAttribute(), nullptr);
}

TEST(VersionSix, PosesNameTheirNodes) {
  const auto scene = Load(R"(
    Model: "Model::a", "Null" { }
    Pose: "Pose::BIND_POSES", "BindPose" {
      PoseNode: { Node: "Model::missing"
        Matrix: 1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1 }
      PoseNode: { Node: "Model::a"
        Matrix: 1,0,0,0,0,1,0,0,0,0,1,0,7,8,9,1 }
    }
  )",
                          "Connect: \"OO\", \"Model::a\", \"Model::Scene\"\n");
  ASSERT_EQ(scene->GetPoseCount(), 1);
  const scene::KFbxPose& pose = *scene->GetPose(0);
  EXPECT_TRUE(pose.IsBindPose());
  ASSERT_EQ(pose.GetCount(), 1);
  EXPECT_EQ(pose.Find(FindNode(*scene, "a")), 0);
  EXPECT_EQ(pose.GetMatrix(0).GetT()[2], 9);
}

TEST(VersionSix, MaterialsAndTexturesAreConnectedByName) {
  const auto scene = Load(R"(
    Model: "Model::a", "Null" { }
    Material: "Material::skin", "" {
      ShadingModel: "phong"
      Properties60: {
        Property: "DiffuseColor", "ColorRGB", "",0.5,0.25,1
        Property: "Diffuse", "ColorRGB", "",9,9,9
      }
    }
    Texture: "Texture::t", "" { FileName: "t.tga" }
  )",
                          R"(
    Connect: "OO", "Model::a", "Model::Scene"
    Connect: "OO", "Material::skin", "Model::a"
    Connect: "OP", "Texture::t", "Material::skin", "DiffuseColor"
  )");
  ASSERT_EQ(FindNode(*scene, "a")->GetMaterialCount(), 1);
  const scene::KFbxSurfaceMaterial* material = FindNode(*scene, "a")->GetMaterial(0);
  const auto* phong = dynamic_cast<const scene::KFbxSurfacePhong*>(material);
  ASSERT_NE(phong, nullptr);
  EXPECT_EQ(phong->diffuse[1], 0.25);
  ASSERT_NE(phong->FindProperty("DiffuseColor"), nullptr);
  EXPECT_EQ(phong->FindProperty("DiffuseColor")->GetSrcTexture(0)->GetFileName(), "t.tga");
}

}  // namespace
