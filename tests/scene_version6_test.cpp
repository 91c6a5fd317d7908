// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/model/mesh.h"
#include "support/load_scene.h"

namespace {

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

}  // namespace
