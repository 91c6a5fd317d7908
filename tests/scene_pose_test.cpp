// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "support/load_scene.h"

namespace {

using support::Doubles;
using support::FbxFile;
using support::FbxRecord;
using support::FbxValue;
using support::Translation;

FbxRecord Entry(int64_t node, std::vector<double> matrix) {
  return {"PoseNode", {}, {{"Node", {node}}, Doubles("Matrix", std::move(matrix))}};
}

/// A bone (1) in the tree, a mesh (2) that is no node, and the pose (3) that `addTo` fills.
std::unique_ptr<scene::KFbxScene> SceneWithPose(void (*addTo)(FbxRecord& pose)) {
  FbxFile file;
  file.Model(1, "bone");
  file.Mesh(2, {}, {});
  addTo(file.BindPose(3, "pose"));
  file.Connect(1, 0);
  return support::LoadScene(file);
}

TEST(Poses, AnEntryGivesTheMatrixOfItsNode) {
  const auto scene = SceneWithPose([](FbxRecord& pose) { pose.Add(Entry(1, Translation(7, 8, 9))); });
  ASSERT_EQ(scene->GetPoseCount(), 1);
  const scene::KFbxPose& pose = *scene->GetPose(0);
  EXPECT_EQ(pose.GetName(), "pose");
  ASSERT_EQ(pose.Find(support::FindNode(*scene, "bone")), 0);
  EXPECT_EQ(pose.GetMatrix(0).GetT()[1], 8);
  EXPECT_FALSE(pose.IsLocalMatrix(0));
  EXPECT_EQ(pose.Find(scene->GetRootNode()), -1);
}

TEST(Poses, EntriesThatCannotBeUsedAreDropped) {
  const auto scene = SceneWithPose([](FbxRecord& pose) {
    pose.Add(Entry(99, Translation(0, 0, 0)));             // no such object
    pose.Add(Entry(0, Translation(0, 0, 0)));              // the root
    pose.Add(Entry(2, Translation(0, 0, 0)));              // no node
    pose.Add(Entry(1, std::vector<double>(15, 0)));        // too few numbers
    pose.Add({"PoseNode", {}, {{"Node", {int64_t{1}}}}});  // no matrix
    pose.Add({"Other", {}, {{"Node", {int64_t{1}}}, Doubles("Matrix", Translation(0, 0, 0))}});
    pose.Add(Entry(1, Translation(7, 8, 9)));
  });
  ASSERT_EQ(scene->GetPose(0)->GetCount(), 1);
  EXPECT_EQ(scene->GetPose(0)->GetMatrix(0).GetT()[0], 7);
}

TEST(Poses, OfTwoEntriesForANodeTheFirstIsFound) {
  const auto scene = SceneWithPose([](FbxRecord& pose) {
    pose.Add(Entry(1, Translation(7, 8, 9)));
    pose.Add(Entry(1, Translation(1, 1, 1)));
  });
  EXPECT_EQ(scene->GetPose(0)->Find(support::FindNode(*scene, "bone")), 0);
}

TEST(Poses, TheLocalMarkIsRead) {
  const auto scene = SceneWithPose([](FbxRecord& pose) {
    pose.Add(Entry(1, Translation(7, 8, 9))).Add({"Local", {1}});
    pose.Add(Entry(1, Translation(7, 8, 9))).Add({"Local", {0}});
  });
  EXPECT_TRUE(scene->GetPose(0)->IsLocalMatrix(0));
  EXPECT_FALSE(scene->GetPose(0)->IsLocalMatrix(1));
}

TEST(Poses, RestPosesAreToldFromBindPosesByTheSubTypeElseByTheRecord) {
  FbxFile file;
  file.BindPose(1, "a");
  file.Object("Pose", 2, "b", "RestPose").Add({"Type", {"BindPose"}});
  file.Object("Pose", 3, "c").Add({"Type", {"BindPose"}});
  file.Object("Pose", 4, "d");
  const auto scene = support::LoadScene(file);
  std::string bindPoses;
  for (int i = 0; i < scene->GetPoseCount(); ++i) {
    if (scene->GetPose(i)->IsBindPose()) bindPoses += scene->GetPose(i)->GetName();
  }
  EXPECT_EQ(scene->GetPoseCount(), 4);
  EXPECT_EQ(bindPoses, "ac");
}

}  // namespace
