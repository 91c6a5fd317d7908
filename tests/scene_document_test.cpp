// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/assemble/build_scene.h"
#include "scene/model/mesh.h"
#include "support/check_scene.h"
#include "support/load_scene.h"

namespace {

using namespace std::string_literals;
using support::ChildNames;
using support::Container;
using support::FbxFile;
using support::FbxValue;
using support::FindNode;
using support::LoadScene;
using support::Property;
using support::Xyz;
using testing::ElementsAre;

/// Name of the only node, whose object is called `text` in the file.
std::string NodeNameFor(const std::string& text, Container container) {
  FbxFile file;
  file.Model(1, "").values[1] = FbxValue(text);
  file.Connect(1, 0);
  return ChildNames(*LoadScene(file, container)->GetRootNode());
}

TEST(ObjectNames, TheClassIsTakenOff) {
  EXPECT_EQ(NodeNameFor("Model::Cube::Model", Container::Ascii), "Cube::Model");
  EXPECT_EQ(NodeNameFor("Model::rig:Hips", Container::Ascii), "rig:Hips");
  EXPECT_EQ(NodeNameFor("Model::", Container::Ascii), "");
  EXPECT_EQ(NodeNameFor("Plain", Container::Ascii), "Plain");
  EXPECT_EQ(NodeNameFor("A::B\0\1Model"s, Container::Binary), "A::B");
  EXPECT_EQ(NodeNameFor("x\0\1y\0\1Model"s, Container::Binary), "x");
  EXPECT_EQ(NodeNameFor("Model::Plain", Container::Binary), "Model::Plain");
}

/// Transform properties of the only node, made with these own and template properties.
scene::TransformProperties TransformOf(support::FbxRecords own, support::FbxRecords defaults = {}) {
  FbxFile file;
  file.Template("Material", {Property("Lcl Translation", {9.0, 9.0, 9.0})});
  file.Template("Model", std::move(defaults));
  file.Model(1, "node", std::move(own));
  file.Connect(1, 0);
  return FindNode(*LoadScene(file), "node")->GetTransformProperties();
}

TEST(ObjectProperties, OddValuesAndMissingOnesKeepTheDefault) {
  const scene::TransformProperties transform = TransformOf(
      {Property("PreRotation", {1.0, 1.0, 1.0}), Property("PreRotation", {2.0, 3.0, 4.0}),
       Property("Lcl Scaling", {2.0}), Property("RotationOrder", {"XYZ"}), Property("InheritType", {-1})});
  EXPECT_THAT(Xyz(transform.preRotation), ElementsAre(2, 3, 4)) << "the last of equal names";
  EXPECT_THAT(Xyz(transform.translation), ElementsAre(0, 0, 0));
  EXPECT_THAT(Xyz(transform.scaling), ElementsAre(2, 1, 1));
  EXPECT_THAT(Xyz(transform.geometricScaling), ElementsAre(1, 1, 1));
  EXPECT_EQ(transform.rotationOrder, 0);
  EXPECT_FALSE(transform.rotationActive);
  EXPECT_EQ(transform.inheritType, scene::InheritType::RSrs);
  EXPECT_EQ(TransformOf({}).inheritType, scene::InheritType::RrSs);
  EXPECT_TRUE(TransformOf({}, {Property("RotationActive", {1})}).rotationActive);
  EXPECT_EQ(TransformOf({Property("RotationOrder", {1})}, {Property("RotationOrder", {2})}).rotationOrder, 1);
  EXPECT_EQ(TransformOf({Property("InheritType", {2})}).inheritType, scene::InheritType::Rrs);
  EXPECT_EQ(TransformOf({Property("RotationOrder", {5.0})}).rotationOrder, 5);
  EXPECT_THAT(Xyz(TransformOf({Property("Lcl Scaling", {"a", "b", 3})}).scaling), ElementsAre(97, 98, 3));
}

TEST(ObjectTable, ObjectsOfAnotherShapeAndRepeatedIdentifiersAreSkipped) {
  FbxFile file;
  file.Model(-5, "negative");
  file.Model(-5, "again");
  file.Model(0, "zero");
  file.Model(2, "short").values.pop_back();
  file.Model(3, "text").values[0] = FbxValue("3");
  file.Object("Constraint", 4, "other");
  file.Connect({{-5, 0}, {0, 0}, {2, 0}, {3, 0}, {4, 0}});
  EXPECT_EQ(ChildNames(*LoadScene(file)->GetRootNode()), "negative");
}

/// The tree below a node, as "a(b c) d".
std::string Tree(const scene::KFbxNode& node) {
  std::string text;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const scene::KFbxNode& child = *node.GetChild(i);
    text += (i ? " " : "") + child.GetName();
    if (child.GetChildCount()) text += "(" + Tree(child) + ")";
  }
  return text;
}

TEST(NodeTree, ConnectionsMakeTheTree) {
  const struct {
    const char* what;
    std::vector<std::pair<int, int>> connections;
    const char* expected;
  } kCases[] = {{"order of connections", {{3, 0}, {1, 0}, {4, 0}, {2, 3}}, "c(b) a d"},
                {"missing objects", {{1, 0}, {99, 1}, {1, 99}, {98, 99}}, "a"},
                {"itself", {{1, 0}, {1, 1}}, "a"},
                {"cycle away from the root", {{1, 2}, {2, 3}, {3, 1}, {4, 0}}, "d"},
                {"two parents, the last one counts", {{1, 0}, {2, 0}, {3, 1}, {3, 2}}, "a b(c)"}};
  for (const auto& c : kCases) {
    for (const Container container : {Container::Binary, Container::Ascii}) {
      FbxFile file;
      for (int id = 1; id <= 4; ++id) file.Model(id, std::string(1, static_cast<char>('a' + id - 1)));
      file.Connect(c.connections);
      file.Connect(4, 1, "LookAtProperty");
      const auto scene = LoadScene(file, container);
      EXPECT_EQ(Tree(*scene->GetRootNode()), c.expected) << c.what;
      support::CheckScene(*scene);
    }
  }
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

TEST(NodeAttributes, TheFirstConnectedOneCountsAndMayBeShared) {
  FbxFile file;
  for (const auto& [id, name] : {std::pair{1, "a"}, {2, "b"}, {3, "none"}}) file.Model(id, name);
  file.Mesh(4, {}, {});
  file.Object("NodeAttribute", 5, "", "Null");
  file.Object("Geometry", 6, "", "Shape");
  file.Connect({{1, 0}, {2, 0}, {3, 0}, {4, 1}, {5, 1}, {4, 2}, {6, 3}});
  const auto scene = LoadScene(file);
  ASSERT_NE(FindNode(*scene, "a")->GetMesh(), nullptr);
  EXPECT_EQ(FindNode(*scene, "a")->GetMesh(), FindNode(*scene, "b")->GetMesh());
  EXPECT_EQ(FindNode(*scene, "none")->GetNodeAttribute(), nullptr);
}

}  // namespace
