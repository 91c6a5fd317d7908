// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/build/build_scene.h"
#include "scene/model/mesh.h"
#include "support/check_scene.h"
#include "support/load_scene.h"

namespace {

using namespace std::string_literals;
using support::ChildNames;
using support::Container;
using support::FbxFile;
using support::FbxRecord;
using support::FbxValue;
using support::FindNode;
using support::LoadScene;
using support::Property;
using testing::ElementsAre;

std::vector<double> Xyz(const scene::KFbxVector4& v) { return {v[0], v[1], v[2]}; }

/// Name of the only node, whose object is called `text` in the file.
std::string NodeNameFor(const std::string& text, Container container) {
  FbxFile file;
  file.Model(1, "").values[1] = FbxValue(text);
  file.Connect(1, 0);
  return ChildNames(*LoadScene(file, container)->GetRootNode());
}

TEST(ObjectNames, TheClassIsTakenOff) {
  EXPECT_EQ(NodeNameFor("Model::Cube", Container::Ascii), "Cube");
  EXPECT_EQ(NodeNameFor("Model::Cube::Model", Container::Ascii), "Cube::Model");
  EXPECT_EQ(NodeNameFor("Model::rig:Hips", Container::Ascii), "rig:Hips");
  EXPECT_EQ(NodeNameFor("Model::", Container::Ascii), "");
  EXPECT_EQ(NodeNameFor("Plain", Container::Ascii), "Plain");
  EXPECT_EQ(NodeNameFor("Cube\0\1Model"s, Container::Binary), "Cube");
  EXPECT_EQ(NodeNameFor("A::B\0\1Model"s, Container::Binary), "A::B");
  EXPECT_EQ(NodeNameFor("x\0\1y\0\1Model"s, Container::Binary), "x");
  EXPECT_EQ(NodeNameFor("Model::Plain", Container::Binary), "Model::Plain");
}

/// Transform properties of the only node, made with these own and template properties.
scene::TransformProperties TransformOf(support::FbxRecords own, support::FbxRecords defaults = {}) {
  FbxFile file;
  if (!defaults.empty()) file.Template("Model", std::move(defaults));
  file.Model(1, "node", std::move(own));
  file.Connect(1, 0);
  return FindNode(*LoadScene(file), "node")->GetTransformProperties();
}

TEST(ObjectProperties, DefaultsApplyWithoutATemplate) {
  const scene::TransformProperties transform = TransformOf({});
  EXPECT_THAT(Xyz(transform.translation), ElementsAre(0, 0, 0));
  EXPECT_THAT(Xyz(transform.scaling), ElementsAre(1, 1, 1));
  EXPECT_THAT(Xyz(transform.geometricScaling), ElementsAre(1, 1, 1));
  EXPECT_FALSE(transform.rotationActive);
  EXPECT_EQ(transform.inheritType, scene::InheritType::RrSs);
}

TEST(ObjectProperties, ATemplateGivesWhatTheObjectLeavesOut) {
  const scene::TransformProperties transform =
      TransformOf({Property("Lcl Translation", {1.0, 2.0, 3.0})},
                  {Property("Lcl Translation", {9.0, 9.0, 9.0}), Property("RotationActive", {1})});
  EXPECT_THAT(Xyz(transform.translation), ElementsAre(1, 2, 3));
  EXPECT_TRUE(transform.rotationActive);
}

TEST(ObjectProperties, TheTemplateOfAnotherKindIsNotUsed) {
  FbxFile file;
  file.Template("Material", {Property("Lcl Translation", {9.0, 9.0, 9.0})});
  file.Model(1, "node");
  file.Connect(1, 0);
  EXPECT_THAT(Xyz(FindNode(*LoadScene(file), "node")->GetTransformProperties().translation),
              ElementsAre(0, 0, 0));
}

TEST(ObjectProperties, TheLastOfEqualNamesCounts) {
  EXPECT_THAT(
      Xyz(TransformOf({Property("PreRotation", {1.0, 1.0, 1.0}), Property("PreRotation", {2.0, 3.0, 4.0})})
              .preRotation),
      ElementsAre(2, 3, 4));
}

TEST(ObjectProperties, MissingComponentsKeepTheDefault) {
  EXPECT_THAT(Xyz(TransformOf({Property("Lcl Scaling", {2.0})}).scaling), ElementsAre(2, 1, 1));
  EXPECT_THAT(Xyz(TransformOf({Property("Lcl Scaling", {})}).scaling), ElementsAre(1, 1, 1));
}

TEST(ObjectProperties, ValuesOfTheWrongTypeKeepTheDefault) {
  EXPECT_EQ(TransformOf({Property("RotationOrder", {"XYZ"})}).rotationOrder, 0);
  EXPECT_EQ(TransformOf({Property("RotationOrder", {5.0})}).rotationOrder, 5);
  EXPECT_THAT(Xyz(TransformOf({Property("Lcl Scaling", {"a", "b", 3})}).scaling), ElementsAre(97, 98, 3));
}

TEST(ObjectProperties, AnInheritTypeOutOfRangeIsTakenAsTheOrdinaryOne) {
  EXPECT_EQ(TransformOf({Property("InheritType", {2})}).inheritType, scene::InheritType::Rrs);
  EXPECT_EQ(TransformOf({Property("InheritType", {3})}).inheritType, scene::InheritType::RSrs);
  EXPECT_EQ(TransformOf({Property("InheritType", {-1})}).inheritType, scene::InheritType::RSrs);
}

TEST(ObjectTable, OfEqualIdentifiersTheFirstObjectCounts) {
  FbxFile file;
  file.Model(1, "first");
  file.Model(1, "second");
  file.Connect(1, 0);
  EXPECT_EQ(ChildNames(*LoadScene(file)->GetRootNode()), "first");
}

TEST(ObjectTable, ObjectsOfAnotherShapeAreSkipped) {
  FbxFile file;
  file.Model(-5, "negative");
  file.Model(0, "zero");
  file.Model(2, "short").values.pop_back();
  file.Model(3, "text").values[0] = FbxValue("3");
  file.Object("Constraint", 4, "other");
  for (const int id : {-5, 0, 2, 3, 4}) file.Connect(id, 0);
  EXPECT_EQ(ChildNames(*LoadScene(file)->GetRootNode()), "negative");
}

TEST(NodeTree, ChildrenStandInTheOrderOfTheirConnections) {
  for (const Container container : {Container::Binary, Container::Ascii}) {
    FbxFile file;
    for (int id = 1; id <= 4; ++id) file.Model(id, std::string(1, static_cast<char>('a' + id - 1)));
    for (const int id : {3, 1, 4}) file.Connect(id, 0);
    file.Connect(2, 3);
    const auto scene = LoadScene(file, container);
    EXPECT_EQ(ChildNames(*scene->GetRootNode()), "c a d");
    EXPECT_EQ(ChildNames(*FindNode(*scene, "c")), "b");
  }
}

TEST(NodeTree, NodesWithoutAConnectionStayOut) {
  FbxFile file;
  file.Model(1, "in");
  file.Model(2, "out");
  file.Connect(1, 0);
  EXPECT_EQ(ChildNames(*LoadScene(file)->GetRootNode()), "in");
}

TEST(NodeTree, ConnectionsToMissingObjectsAreDropped) {
  FbxFile file;
  file.Model(1, "a");
  file.Connect(1, 0);
  file.Connect(99, 1);
  file.Connect(1, 99);
  file.Connect(98, 99);
  const auto scene = LoadScene(file);
  EXPECT_EQ(ChildNames(*scene->GetRootNode()), "a");
  EXPECT_EQ(ChildNames(*FindNode(*scene, "a")), "");
}

TEST(NodeTree, APropertyConnectionIsNoParent) {
  FbxFile file;
  file.Model(1, "a");
  file.Model(2, "target");
  file.Connect(1, 0);
  file.Connect(2, 0);
  file.Connect(2, 1, "LookAtProperty");
  EXPECT_EQ(ChildNames(*LoadScene(file)->GetRootNode()), "a target");
}

TEST(NodeTree, AConnectionToItselfIsIgnored) {
  FbxFile file;
  file.Model(1, "a");
  file.Connect(1, 0);
  file.Connect(1, 1);
  EXPECT_EQ(ChildNames(*LoadScene(file)->GetRootNode()), "a");
}

TEST(NodeTree, ACycleThatNothingTiesToTheRootStaysOut) {
  FbxFile file;
  for (int id = 1; id <= 4; ++id) file.Model(id, std::to_string(id));
  file.Connect(1, 2);
  file.Connect(2, 3);
  file.Connect(3, 1);
  file.Connect(4, 0);
  const auto scene = LoadScene(file);
  EXPECT_EQ(ChildNames(*scene->GetRootNode()), "4");
  support::CheckScene(*scene);
}

TEST(NodeTree, OfTwoParentsTheLastConnectedCounts) {
  FbxFile file;
  file.Model(1, "first");
  file.Model(2, "last");
  file.Model(3, "child");
  file.Connect(1, 0);
  file.Connect(2, 0);
  file.Connect(3, 1);
  file.Connect(3, 2);
  const auto scene = LoadScene(file);
  EXPECT_EQ(ChildNames(*FindNode(*scene, "first")), "");
  EXPECT_EQ(ChildNames(*FindNode(*scene, "last")), "child");
}

TEST(NodeTree, AChainOfTwentyThousandNodesIsBuiltAndEvaluated) {
  constexpr int kLength = 20000;
  FbxFile file;
  for (int id = 1; id <= kLength; ++id) {
    file.Model(id, id == kLength ? "end" : "", {Property("Lcl Translation", {1.0, 0.0, 0.0})});
    file.Connect(id, id - 1);
  }
  const auto scene = LoadScene(file);
  const scene::KFbxNode* end = FindNode(*scene, "end");
  ASSERT_NE(end, nullptr);
  EXPECT_THAT(Xyz(end->GetGlobalFromDefaultTake().GetT()), ElementsAre(20000, 0, 0));
}

using EType = scene::KFbxNodeAttribute::EAttributeType;

/// The attribute of a node to which an object of this record and sub-type is connected.
EType AttributeTypeFor(const std::string& record, const std::string& subType) {
  FbxFile file;
  file.Model(1, "node");
  file.Object(record, 2, "", subType);
  file.Connect(1, 0);
  file.Connect(2, 1);
  return FindNode(*LoadScene(file), "node")->GetNodeAttribute()->GetAttributeType();
}

TEST(NodeAttributes, TheSubTypeTellsTheKind) {
  for (const char* bone : {"LimbNode", "Limb", "Root", "FbxLimbNode"}) {
    EXPECT_EQ(AttributeTypeFor("NodeAttribute", bone), EType::eSKELETON) << bone;
  }
  EXPECT_EQ(AttributeTypeFor("NodeAttribute", "Null"), EType::eNULL);
  EXPECT_EQ(AttributeTypeFor("NodeAttribute", "Camera"), EType::eCAMERA);
  EXPECT_EQ(AttributeTypeFor("NodeAttribute", "Light"), EType::eLIGHT);
  EXPECT_EQ(AttributeTypeFor("NodeAttribute", "IKEffector"), EType::eMARKER);
  EXPECT_EQ(AttributeTypeFor("NodeAttribute", "Unheard"), EType::eUNIDENTIFIED);
  EXPECT_EQ(AttributeTypeFor("Geometry", "Mesh"), EType::eMESH);
  EXPECT_EQ(AttributeTypeFor("Geometry", "NurbsSurface"), EType::eNURB);
}

TEST(NodeAttributes, ANodeHasNoneUnlessOneIsConnected) {
  FbxFile file;
  file.Model(1, "node");
  file.Object("Geometry", 2, "", "Shape");
  file.Connect(1, 0);
  file.Connect(2, 1);
  EXPECT_EQ(FindNode(*LoadScene(file), "node")->GetNodeAttribute(), nullptr);
}

TEST(NodeAttributes, TheFirstConnectedOneCounts) {
  FbxFile file;
  file.Model(1, "node");
  file.Object("NodeAttribute", 2, "", "Null");
  file.Mesh(3, {}, {});
  file.Connect(1, 0);
  file.Connect(3, 1);
  file.Connect(2, 1);
  EXPECT_NE(FindNode(*LoadScene(file), "node")->GetMesh(), nullptr);
}

TEST(NodeAttributes, SeveralNodesMayShareAMesh) {
  FbxFile file;
  file.Model(1, "a");
  file.Model(2, "b");
  file.Mesh(3, {0, 0, 0}, {});
  for (const int id : {1, 2}) {
    file.Connect(id, 0);
    file.Connect(3, id);
  }
  const auto scene = LoadScene(file);
  ASSERT_NE(FindNode(*scene, "a")->GetMesh(), nullptr);
  EXPECT_EQ(FindNode(*scene, "a")->GetMesh(), FindNode(*scene, "b")->GetMesh());
}

TEST(SceneBuilding, AFileWithoutObjectsGivesAnEmptyScene) {
  support::ReadResult result = support::ReadRecords(support::WriteBinary({{"Creator", {"me"}}}));
  scene::KFbxScene scene("scene");
  BuildScene(std::move(result.tree), scene);
  EXPECT_EQ(ChildNames(*scene.GetRootNode()), "");
}

TEST(SceneBuilding, ASecondBuildLeavesNothingOfTheFirst) {
  FbxFile file;
  file.Model(1, "node");
  file.BindPose(2, "pose");
  file.Connect(1, 0);
  const std::string bytes = support::WriteBinary(file.Records());
  scene::KFbxScene scene("scene");
  for (int i = 0; i < 2; ++i) BuildScene(support::ReadRecords(bytes).tree, scene);
  EXPECT_EQ(ChildNames(*scene.GetRootNode()), "node");
  EXPECT_EQ(scene.GetPoseCount(), 1);
}

}  // namespace
