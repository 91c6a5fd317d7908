// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/model/mesh.h"
#include "support/load_scene.h"

namespace {

using scene::KFbxCluster;
using scene::KFbxXMatrix;
using support::Doubles;
using support::FbxFile;
using support::FbxRecord;
using support::FbxRecords;
using support::Identity;
using support::Matrix16;
using support::Translation;
using testing::ElementsAre;

/// A quarter turn about z: the x axis goes to y, the y axis to -x.
Matrix16 QuarterTurn() { return {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}; }

/// A cluster and the records that it reads from.
struct LoadedCluster {
  explicit LoadedCluster(FbxRecords children)
      : records(support::ReadRecords(support::WriteBinary({{"Deformer", {}, std::move(children)}}))),
        cluster("cluster", records["Deformer"]) {}

  support::ReadResult records;
  KFbxCluster cluster;
};

std::vector<double> Origin(const std::optional<KFbxXMatrix>& matrix) {
  return matrix ? support::Xyz(matrix->GetT()) : std::vector<double>();
}

TEST(ClusterMatrices, TheStoredTransformIsUndoneByTheLink) {
  LoadedCluster loaded({Doubles("Transform", Translation(1, 2, 3)), Doubles("TransformLink", QuarterTurn()),
                        Doubles("TransformAssociateModel", Translation(4, 5, 6))});
  EXPECT_THAT(Origin(loaded.cluster.GetTransformMatrix()), ElementsAre(-2, 1, 3));
  EXPECT_THAT(Origin(loaded.cluster.GetTransformLinkMatrix()), ElementsAre(0, 0, 0));
  EXPECT_EQ(loaded.cluster.GetTransformLinkMatrix()->At(1), 1);
  EXPECT_THAT(Origin(loaded.cluster.GetTransformAssociateModelMatrix()), ElementsAre(4, 5, 6));
  EXPECT_EQ(LoadedCluster(FbxRecords()).cluster.GetTransformAssociateModelMatrix(), std::nullopt);
}

TEST(ClusterMatrices, AMatrixThatCannotBeUsedIsAbsent) {
  Matrix16 flat = Translation(1, 2, 3);
  flat[5] = 0;
  const auto transformWith = [](FbxRecords children) {
    return LoadedCluster(std::move(children)).cluster.GetTransformMatrix().has_value();
  };
  const FbxRecord transform = Doubles("Transform", Identity());
  EXPECT_TRUE(transformWith({transform, Doubles("TransformLink", Identity())}));
  EXPECT_TRUE(transformWith({Doubles("Transform", flat), Doubles("TransformLink", Identity())}));
  EXPECT_FALSE(transformWith({transform}));
  EXPECT_FALSE(transformWith({transform, Doubles("TransformLink", flat)})) << "no inverse";
  EXPECT_FALSE(transformWith({transform, Doubles("TransformLink", std::vector<double>(15, 1))}));
  EXPECT_FALSE(transformWith({transform, Doubles("TransformLink", std::vector<double>(28, 1))}));
  EXPECT_FALSE(transformWith({Doubles("TransformLink", Identity())}));
}

TEST(ClusterWeights, OfListsOfDifferentLengthTheShorterCounts) {
  const auto pairs = [](std::vector<double> indices, std::vector<double> weights) {
    LoadedCluster loaded(
        {support::Ints("Indexes", std::move(indices)), Doubles("Weights", std::move(weights))});
    std::string text;
    for (int i = 0; i < loaded.cluster.GetControlPointIndicesCount(); ++i) {
      const auto k = static_cast<size_t>(i);
      text += std::to_string(loaded.cluster.GetControlPointIndices()[k]) + ":" +
              std::to_string(static_cast<int>(loaded.cluster.GetControlPointWeights()[k] * 100)) + " ";
    }
    return text;
  };
  EXPECT_EQ(pairs({5, 6, 7}, {0.25, 0.5, 1}), "5:25 6:50 7:100 ");
  EXPECT_EQ(pairs({5, 6, 7}, {0.25, 0.5}), "5:25 6:50 ");
  EXPECT_EQ(pairs({5}, {0.25, 0.5}), "5:25 ");
  EXPECT_EQ(pairs({5, 5}, {-0.25, 0}), "5:-25 5:0 ") << "kept as they are";
  EXPECT_EQ(LoadedCluster(FbxRecords()).cluster.GetControlPointIndicesCount(), 0);
}

/// A mesh (3) on node "body" (1) with bones "a" (11) and "b" (12), skin 4 and cluster 5.
FbxFile SkinnedBody() {
  FbxFile file;
  file.Model(1, "body");
  file.Model(11, "a");
  file.Model(12, "b");
  file.Mesh(3, {0, 0, 0}, {});
  file.Skin(4);
  file.Cluster(5, {0}, {1});
  file.Connect({{1, 0}, {11, 0}, {12, 0}, {3, 1}, {4, 3}, {5, 4}});
  return file;
}

TEST(Skins, ClustersStandInTheOrderOfTheirConnectionsBelowTheFirstMesh) {
  FbxFile file = SkinnedBody();
  file.Object("Deformer", 6, "second", "Cluster");
  file.Object("Deformer", 7, "third", "Cluster");
  file.Model(20, "other");
  file.Mesh(21, {0, 0, 0}, {});
  // Two connections are repeated; of two meshes the skin belongs to the first.
  file.Connect({{7, 4}, {6, 4}, {7, 4}, {4, 3}, {20, 0}, {21, 20}, {4, 21}});
  const auto scene = support::LoadScene(file);
  const scene::KFbxMesh* mesh = support::FindNode(*scene, "body")->GetMesh();
  EXPECT_EQ(support::FindNode(*scene, "other")->GetMesh()->GetSkinCount(), 0);
  ASSERT_EQ(mesh->GetSkinCount(), 1);
  ASSERT_EQ(mesh->GetSkin(0)->GetClusterCount(), 3);
  EXPECT_EQ(mesh->GetSkin(0)->GetCluster(1)->GetName(), "third");
  EXPECT_EQ(mesh->GetSkin(0)->GetCluster(2)->GetName(), "second");
}

TEST(Skins, TheFirstConnectedNodeIsTheLink) {
  const auto linkOf = [](const std::vector<std::pair<int, int>>& connections) -> std::string {
    FbxFile file = SkinnedBody();
    file.Connect(12, 5, "SrcModel");
    file.Connect(connections);
    const auto scene = support::LoadScene(file);
    const scene::KFbxMesh* mesh = support::FindNode(*scene, "body")->GetMesh();
    const scene::KFbxNode* link = mesh->GetSkin(0)->GetCluster(0)->GetLink();
    return !link ? "none" : link == scene->GetRootNode() ? "root" : link->GetName();
  };
  EXPECT_EQ(linkOf({{11, 5}, {12, 5}}), "a");
  EXPECT_EQ(linkOf({{0, 5}}), "root");
  EXPECT_EQ(linkOf({{99, 5}}), "none");
}

}  // namespace
