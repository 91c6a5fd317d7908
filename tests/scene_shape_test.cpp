// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/model/mesh.h"
#include "support/load_scene.h"

namespace {

using support::Doubles;
using support::FbxFile;
using support::FbxRecord;
using support::Ints;
using support::Property;
using testing::ElementsAre;

/// Adds a target that moves point 0 by `x` along x.
void AddTarget(FbxFile& file, int id, double x) {
  FbxRecord& shape = file.Object("Geometry", id, "", "Shape");
  shape.Add(Ints("Indexes", {0}));
  shape.Add(Doubles("Vertices", {x, 0, 0}));
}

/// A mesh (2) of the points (0,0,0) and (1,1,1) on node "face" with a blend shape (3).
FbxFile Face() {
  FbxFile file;
  file.Model(1, "face");
  file.Mesh(2, {0, 0, 0, 1, 1, 1}, {});
  file.Object("Deformer", 3, "", "BlendShape");
  file.Connect({{1, 0}, {2, 1}, {3, 2}});
  return file;
}

/// Points of the node "face" with all shapes applied.
std::vector<double> ShapedPoints(const FbxFile& file) {
  const auto scene = support::LoadScene(file);
  scene::KFbxMesh* mesh = support::FindNode(*scene, "face")->GetMesh();
  std::vector<double> points(mesh->GetControlPoints().begin(), mesh->GetControlPoints().end());
  for (const scene::KFbxShape& shape : mesh->GetShapes()) ApplyShape(shape, points);
  return points;
}

/// Where a channel at `percent`, with targets that move a point by 10 and by 20, takes the point.
double ShapedX(double percent, std::vector<double> fullWeights) {
  FbxFile file = Face();
  FbxRecord& channel = file.Object("Deformer", 4, "", "BlendShapeChannel");
  channel.Add(support::Properties({Property("DeformPercent", {percent})}));
  channel.Add(Doubles("FullWeights", std::move(fullWeights)));
  AddTarget(file, 5, 10);
  AddTarget(file, 6, 20);
  file.Connect({{4, 3}, {5, 4}, {6, 4}});
  return ShapedPoints(file)[0];
}

TEST(Shapes, BetweenTwoTargetsBothCountInPart) {
  EXPECT_DOUBLE_EQ(ShapedX(25, {50, 100}), 5);
  EXPECT_DOUBLE_EQ(ShapedX(75, {50, 100}), 15);
  EXPECT_DOUBLE_EQ(ShapedX(100, {50, 100}), 20);
  EXPECT_DOUBLE_EQ(ShapedX(150, {50, 100}), 30);
  EXPECT_DOUBLE_EQ(ShapedX(-50, {50, 100}), -10);
}

TEST(Shapes, WithoutUsableWeightsTheLastTargetIsFullAtAHundred) {
  EXPECT_DOUBLE_EQ(ShapedX(50, {}), 10);
  EXPECT_DOUBLE_EQ(ShapedX(50, {1, 1, 1, 1}), 10) << "one for each point";
  EXPECT_DOUBLE_EQ(ShapedX(50, {100, 50}), 10) << "falling";
  EXPECT_DOUBLE_EQ(ShapedX(50, {0, 100}), 10) << "zero";
}

/// Where a channel with this child and property takes a point that its only target moves by 10.
double SingleTargetX(std::vector<FbxRecord> channelChildren) {
  FbxFile file = Face();
  file.Object("Deformer", 4, "", "BlendShapeChannel").children = std::move(channelChildren);
  AddTarget(file, 5, 10);
  file.Connect({{4, 3}, {5, 4}});
  return ShapedPoints(file)[0];
}

TEST(Shapes, ThePropertyGivesThePercentageElseTheRecord) {
  const FbxRecord property = support::Properties({Property("DeformPercent", {35.0})});
  const FbxRecord record("DeformPercent", {80.0});
  EXPECT_DOUBLE_EQ(SingleTargetX({property, record}), 3.5);
  EXPECT_DOUBLE_EQ(SingleTargetX({record}), 8);
  EXPECT_DOUBLE_EQ(SingleTargetX({}), 0);
  EXPECT_DOUBLE_EQ(SingleTargetX({record, Doubles("FullWeights", {25, 25})}), 8) << "ignored for one target";
}

TEST(Shapes, ChannelsAddUpAndOffsetsOfMissingPointsAreIgnored) {
  FbxFile file = Face();
  for (const int channel : {4, 5}) {
    file.Object("Deformer", channel, "", "BlendShapeChannel").Add({"DeformPercent", {100.0}});
    file.Connect(channel, 3);
    FbxRecord& shape = file.Object("Geometry", channel + 10, "", "Shape");
    shape.Add(Ints("Indexes", {-1, 1, 2, 0}));
    // The offset of the last index is incomplete.
    shape.Add(Doubles("Vertices", {9, 9, 9, 0, 0.5, 0, 9, 9, 9, 9, 9}));
    file.Connect(channel + 10, channel);
  }
  EXPECT_THAT(ShapedPoints(file), ElementsAre(0, 0, 0, 1, 2, 1));
}

}  // namespace
