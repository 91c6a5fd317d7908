// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

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
    Model: "Model::d" { Vertices: 0,0,0
      PolygonVertexIndex: -1
      Link: "missing" { } }
    Model: "e" { Children: "f" }
    Model: "f" { Children: "e" }
    Model: "g" { Children: "g" }
  )");
  EXPECT_EQ(ChildNames(*scene->GetRootNode()), "a d");
  EXPECT_EQ(ChildNames(*FindNode(*scene, "a")), "c b");
  EXPECT_TRUE(FindNode(*scene, "b")->IsSkeleton());
  EXPECT_NE(FindNode(*scene, "c")->GetNodeAttribute(), nullptr);
  EXPECT_EQ(FindNode(*scene, "a")->GetNodeAttribute(), nullptr);
  const scene::KFbxMesh* mesh = FindNode(*scene, "d")->GetMesh();
  ASSERT_TRUE(mesh && mesh->GetSkinCount() == 1);
  EXPECT_EQ(mesh->GetSkin(0)->GetCluster(0)->GetLink(), nullptr);
}

TEST(VersionFive, TransformsAreTheDefaultsOfChannelsInTheModelOrTheCurrentTake) {
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
    Model: "Model::c" { }
    Takes: {
      Current: "Take 2"
      Take: "Take 1" { Model: "Model::c" { Channel: "Transform" { Channel: "T" { Channel: "X" { Default: 1 } } } } }
      Take: "Take 2" { Model: "Model::c" { Channel: "Transform" { Channel: "T" { Channel: "X" { Default: 2 } } } } }
    }
  )");
  EXPECT_THAT(Position(*FindNode(*scene, "a")), ElementsAre(10, 0, 5));
  // The parent doubles x and turns it to y.
  EXPECT_THAT(Position(*FindNode(*scene, "b")), ElementsAre(10, 2, 5));
  EXPECT_THAT(Position(*FindNode(*scene, "c")), ElementsAre(2, 0, 0));
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

}  // namespace
