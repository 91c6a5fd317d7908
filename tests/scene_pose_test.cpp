// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "support/load_scene.h"

namespace {

using support::Doubles;
using support::FbxFile;
using support::FbxRecord;
using support::Translation;

FbxRecord Entry(int64_t node, std::vector<double> matrix) {
  return {"PoseNode", {}, {{"Node", {node}}, Doubles("Matrix", std::move(matrix))}};
}

TEST(Poses, EntriesGiveTheMatricesOfNodesAndOthersAreDropped) {
  FbxFile file;
  file.Model(1, "bone");
  file.Mesh(2, {}, {});
  FbxRecord& record = file.BindPose(3, "pose");
  record.Add(Entry(99, Translation(0, 0, 0)));             // no such object
  record.Add(Entry(0, Translation(0, 0, 0)));              // the root
  record.Add(Entry(2, Translation(0, 0, 0)));              // no node
  record.Add(Entry(1, std::vector<double>(15, 0)));        // too few numbers
  record.Add({"PoseNode", {}, {{"Node", {int64_t{1}}}}});  // no matrix
  record.Add({"Other", {}, {{"Node", {int64_t{1}}}, Doubles("Matrix", Translation(0, 0, 0))}});
  record.Add(Entry(1, Translation(7, 8, 9)));
  record.Add(Entry(1, Translation(1, 1, 1))).Add({"Local", {1}});
  record.Add(Entry(1, Translation(1, 1, 1))).Add({"Local", {0}});
  file.Connect(1, 0);
  const auto scene = support::LoadScene(file);
  ASSERT_EQ(scene->GetPoseCount(), 1);
  const scene::KFbxPose& pose = *scene->GetPose(0);
  EXPECT_EQ(pose.GetName(), "pose");
  ASSERT_EQ(pose.GetCount(), 3);
  EXPECT_EQ(pose.Find(support::FindNode(*scene, "bone")), 0) << "the first of several entries";
  EXPECT_EQ(pose.Find(scene->GetRootNode()), -1);
  EXPECT_EQ(pose.GetMatrix(0).GetT()[1], 8);
  EXPECT_FALSE(pose.IsLocalMatrix(0));
  EXPECT_TRUE(pose.IsLocalMatrix(1));
  EXPECT_FALSE(pose.IsLocalMatrix(2));
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
