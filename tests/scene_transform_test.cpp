// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/math/node_transform.h"
#include "support/load_scene.h"

namespace {

using scene::EvaluateWorldTransform;
using scene::InheritType;
using scene::KFbxVector4;
using scene::TransformProperties;
using scene::WorldTransform;
using testing::DoubleNear;
using testing::ElementsAre;

testing::Matcher<std::vector<double>> At(double x, double y, double z) {
  return ElementsAre(DoubleNear(x, 1e-12), DoubleNear(y, 1e-12), DoubleNear(z, 1e-12));
}

/// Where `node` below `parent` puts the point `p`.
std::vector<double> Image(const TransformProperties& node, const KFbxVector4& p,
                          const WorldTransform& parent = {}) {
  return support::Xyz(EvaluateWorldTransform(node, parent).global.MultT(p));
}

// Quarter turns: about x (x, y, z) goes to (x, -z, y), about y to (z, y, -x), about z to (-y, x, z).

TransformProperties QuarterTurns(int order, bool active) {
  TransformProperties node;
  node.rotation = {90, 90, 90};
  node.rotationOrder = order;
  node.rotationActive = active;
  return node;
}

TEST(NodeTransform, TheFirstLetterOfTheRotationOrderTurnsFirst) {
  const KFbxVector4 p{1, 2, 3};
  for (const int xyz : {0, -1, 6, 7}) EXPECT_THAT(Image(QuarterTurns(xyz, true), p), At(3, 2, -1));
  EXPECT_THAT(Image(QuarterTurns(1, true), p), At(2, 1, -3)) << "XZY";
  EXPECT_THAT(Image(QuarterTurns(2, true), p), At(-2, 1, 3)) << "YZX";
  EXPECT_THAT(Image(QuarterTurns(3, true), p), At(-1, 3, 2)) << "YXZ";
  EXPECT_THAT(Image(QuarterTurns(4, true), p), At(1, -3, 2)) << "ZXY";
  EXPECT_THAT(Image(QuarterTurns(5, true), p), At(3, -2, 1)) << "ZYX";
  EXPECT_THAT(Image(QuarterTurns(5, false), p), At(3, 2, -1)) << "the order counts for active rotations";
  TransformProperties limitOnly = QuarterTurns(5, true);
  limitOnly.rotationSpaceForLimitOnly = true;
  EXPECT_THAT(Image(limitOnly, p), At(3, 2, -1));
}

TEST(NodeTransform, PreAndInvertedPostRotationEncloseAnActiveRotation) {
  TransformProperties node;
  node.preRotation = {90, 0, 0};
  node.rotation = {0, 0, 90};
  node.postRotation = {0, 90, 0};
  // About z only.
  EXPECT_THAT(Image(node, {1, 2, 3}), At(-2, 1, 3));
  // Back about y to (-3, 2, 1), about z to (-2, -3, 1), about x.
  node.rotationActive = true;
  EXPECT_THAT(Image(node, {1, 2, 3}), At(-2, -1, -3));
}

TEST(NodeTransform, PivotsAndOffsetsMoveThePointStepByStep) {
  TransformProperties node;
  node.translation = {10, 0, 0};
  node.rotationOffset = {0, 1, 0};
  node.rotationPivot = {1, 0, 0};
  node.rotation = {0, 0, 90};
  node.scalingOffset = {0, 0, 5};
  node.scalingPivot = {0, 2, 0};
  node.scaling = {2, 2, 2};
  // (1,0,3) from the scaling pivot, (2,0,6) scaled, (2,2,11) with pivot and offset; (1,2,11) from the
  // rotation pivot, (-2,1,11) turned, (-1,2,11) with pivot and offset; then the translation.
  EXPECT_THAT(Image(node, {1, 2, 3}), At(9, 2, 11));
}

/// A parent that is moved by x 1, turned about z by 90 degrees and twice as long in x.
WorldTransform LongParent() {
  TransformProperties parent;
  parent.translation = {1, 0, 0};
  parent.rotation = {0, 0, 90};
  parent.scaling = {2, 1, 1};
  return EvaluateWorldTransform(parent, {});
}

TransformProperties LongChild(InheritType type) {
  TransformProperties child;
  child.translation = {1, 0, 0};
  child.rotation = {0, 0, 90};
  child.scaling = {1, 3, 1};
  child.inheritType = type;
  return child;
}

TEST(NodeTransform, ScaleIsInheritedAsTheInheritTypeTells) {
  // The child's origin is at (1,2,0) in all cases. Both turns together negate x and y.
  // Scales multiply per axis: (2,3,1), then the turns.
  EXPECT_THAT(Image(LongChild(InheritType::RrSs), {1, 1, 0}, LongParent()), At(-1, -1, 0));
  // Plain product: (1,3,0), turned (-3,1,0), moved (-2,1,0); scaled (-4,1,0), turned (-1,-4,0), moved.
  EXPECT_THAT(Image(LongChild(InheritType::RSrs), {1, 1, 0}, LongParent()), At(0, -4, 0));
  // Without the parent's scale: (1,3,0), then the turns.
  EXPECT_THAT(Image(LongChild(InheritType::Rrs), {1, 1, 0}, LongParent()), At(0, -1, 0));
}

TEST(NodeTransform, AChildThatIgnoresItsParentsScaleKeepsItsGrandparents) {
  TransformProperties twice, thrice, plain;
  twice.scaling = {2, 2, 2};
  thrice.scaling = {3, 3, 3};
  plain.inheritType = InheritType::Rrs;
  const WorldTransform parent = EvaluateWorldTransform(thrice, EvaluateWorldTransform(twice, {}));
  EXPECT_THAT(Image(plain, {1, 0, 0}, parent), At(2, 0, 0));
}

TEST(NodeTransform, AScaleOfZeroDoesNotSpreadWhereItIsIgnored) {
  TransformProperties flat, child;
  flat.scaling = {0, 1, 1};
  child.inheritType = InheritType::Rrs;
  EXPECT_THAT(Image(child, {1, 1, 1}, EvaluateWorldTransform(flat, {})), At(0, 1, 1));
}

TEST(NodeTransform, NodesOfASceneAreEvaluatedBelowTheirParentsWithoutGeometricTransforms) {
  support::FbxFile file;
  using support::Property;
  file.Model(
      1, "parent",
      {Property("Lcl Translation", {1.0, 0.0, 0.0}), Property("Lcl Rotation", {0.0, 0.0, 90.0}),
       Property("GeometricTranslation", {0.0, 0.0, 5.0}), Property("GeometricRotation", {0.0, 0.0, 90.0}),
       Property("GeometricScaling", {2.0, 1.0, 1.0})});
  file.Model(2, "child", {Property("Lcl Translation", {2.0, 0.0, 0.0})});
  file.Connect({{1, 0}, {2, 1}});
  const auto scene = support::LoadScene(file);
  const scene::KFbxNode& child = *support::FindNode(*scene, "child");
  EXPECT_THAT(support::Xyz(child.GetGlobalFromDefaultTake().GetT()), At(1, 2, 0));
  EXPECT_THAT(support::Xyz(child.GetLocalFromDefaultTake().GetT()), At(2, 0, 0));
  // Scaled, then turned, then moved.
  EXPECT_THAT(support::Xyz(child.GetParent()->GetGeometricTransform().MultT({1, 1, 1})), At(-1, 2, 6));
}

}  // namespace
