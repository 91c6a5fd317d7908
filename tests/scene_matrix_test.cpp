// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/math/matrix.h"
#include "support/load_scene.h"

namespace {

using scene::KFbxVector4;
using scene::KFbxXMatrix;
using support::Xyz;
using testing::DoubleNear;
using testing::ElementsAre;

testing::Matcher<std::vector<double>> Near(double x, double y, double z) {
  return ElementsAre(DoubleNear(x, 1e-9), DoubleNear(y, 1e-9), DoubleNear(z, 1e-9));
}

/// The matrix whose axes have these images.
KFbxXMatrix Axes(const KFbxVector4& x, const KFbxVector4& y, const KFbxVector4& z) {
  KFbxXMatrix matrix;
  for (size_t i = 0; i < 3; ++i) {
    matrix.At(i) = x[i];
    matrix.At(4 + i) = y[i];
    matrix.At(8 + i) = z[i];
  }
  return matrix;
}

TEST(Matrix, AnglesOfARotationComeBack) {
  for (const KFbxVector4& angles :
       {KFbxVector4(10, 20, 30), KFbxVector4(-170, 80, 100), KFbxVector4(45, -89, -45)}) {
    EXPECT_THAT(Xyz(KFbxXMatrix::Rotation(angles).GetR()), Near(angles[0], angles[1], angles[2]));
  }
  EXPECT_THAT(Xyz(KFbxXMatrix::Rotation({50, 90, 20}).GetR()), Near(30, 90, 0))
      << "all of the turn goes to x";
  EXPECT_THAT(Xyz(KFbxXMatrix::Rotation({50, -90, 20}).GetR()), Near(70, -90, 0));
}

TEST(Matrix, AMirroredMatrixHasThreeNegativeScalesAndIsRebuiltByThem) {
  const KFbxXMatrix mirrored = Axes({0, -2, 0}, {-3, 0, 0}, {0, 0, 4});
  ASSERT_LT(mirrored.Determinant(), 0);
  EXPECT_THAT(Xyz(mirrored.GetS()), Near(-2, -3, -4));
  const KFbxXMatrix rebuilt(mirrored.GetT(), mirrored.GetR(), mirrored.GetS());
  for (size_t i = 0; i < 16; ++i) EXPECT_NEAR(rebuilt.At(i), mirrored.At(i), 1e-12) << i;
}

TEST(Matrix, AnAxisWithoutLengthStaysUnturned) {
  const KFbxXMatrix flat = Axes({0, 0, 0}, {0, 1, 0}, {0, 0, 1});
  EXPECT_THAT(Xyz(flat.GetS()), Near(0, 1, 1));
  EXPECT_THAT(Xyz(flat.GetR()), Near(0, 0, 0));
}

TEST(Matrix, WithoutAnInverseOnlyTheTranslationIsUndone) {
  for (const KFbxVector4& scale : {KFbxVector4(1, 0, 1), KFbxVector4(1e-200, 1e-200, 1)}) {
    EXPECT_THAT(Xyz(KFbxXMatrix({1, 2, 3}, {0, 0, 90}, scale).Inverse().MultT({5, 5, 5})), Near(4, 3, 2));
  }
}

}  // namespace
