// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "scene/math/matrix.h"
#include "scene/math/nearest_rotation.h"
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

/// Random, but the same in every run.
class Dice {
 public:
  double Between(double low, double high) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return low + (high - low) * static_cast<double>(state_ >> 11) / 9007199254740992.0;
  }
  KFbxXMatrix Rotation() {
    return KFbxXMatrix::Rotation({Between(-180, 180), Between(-90, 90), Between(-180, 180)});
  }

 private:
  uint64_t state_ = 7;
};

double LargestDifference(const KFbxXMatrix& a, const KFbxXMatrix& b) {
  double largest = 0.0;
  for (size_t i = 0; i < 16; ++i) largest = std::max(largest, std::abs(a.At(i) - b.At(i)));
  return largest;
}

TEST(Matrix, IsRebuiltFromItsAnglesNearQuarterTurns) {
  Dice dice;
  for (const double noise : {0.0, 1e-12, 1e-10, 1e-9, 1e-8, 1e-7, 1e-6, 1e-5, 1e-4, 1e-3}) {
    for (int i = 0; i < 2000; ++i) {
      const double turn = (i % 2 == 0 ? 90.0 : -90.0) + (i % 4 < 2 ? 0.0 : dice.Between(-5, 5));
      const KFbxXMatrix about = KFbxXMatrix::Rotation({0, 0, dice.Between(-180, 180)});
      KFbxXMatrix m = i % 8 == 7 ? dice.Rotation()
                                 : about * KFbxXMatrix::Rotation({0, turn, 0}) *
                                       KFbxXMatrix::Rotation({dice.Between(-180, 180), 0, 0});
      for (size_t axis = 0; axis < 12; ++axis) m.At(axis) += axis % 4 < 3 ? dice.Between(-noise, noise) : 0.0;
      const KFbxXMatrix rebuilt({}, m.GetR(), {1, 1, 1});
      ASSERT_LT(LargestDifference(rebuilt, m), 40 * noise + 1e-8) << "noise " << noise << ", number " << i;
    }
  }
}

TEST(Matrix, AMirroredMatrixHasThreeNegativeScalesAndIsRebuiltByThem) {
  const KFbxXMatrix mirrored = Axes({0, -2, 0}, {-3, 0, 0}, {0, 0, 4});
  ASSERT_LT(mirrored.Determinant(), 0);
  EXPECT_THAT(Xyz(mirrored.GetS()), Near(-2, -3, -4));
  const KFbxXMatrix rebuilt(mirrored.GetT(), mirrored.GetR(), mirrored.GetS());
  for (size_t i = 0; i < 16; ++i) EXPECT_NEAR(rebuilt.At(i), mirrored.At(i), 1e-12) << i;
}

TEST(Matrix, TheNearestRotationIsWhatWasShearedAfterwards) {
  Dice dice;
  for (int i = 0; i < 200; ++i) {
    const KFbxXMatrix rotation = dice.Rotation(), about = dice.Rotation();
    const double mirror = i % 2 == 0 ? 1.0 : -1.0, far = i % 3 == 0 ? 1e4 : 1.0;
    const KFbxXMatrix uneven = KFbxXMatrix::Scaling(
        KFbxVector4(dice.Between(0.5, 2), dice.Between(0.5, 2) * far, dice.Between(0.5, 2)) * mirror);
    const KFbxXMatrix sheared = about * uneven * about.Inverse() * rotation;
    const KFbxXMatrix nearest = NearestRotationIfSheared(sheared);
    ASSERT_LT(LargestDifference(nearest, KFbxXMatrix::Scaling(KFbxVector4(1, 1, 1) * mirror) * rotation),
              1e-14 * far)
        << i;
    const KFbxXMatrix even = rotation * uneven;
    ASSERT_LT(LargestDifference(NearestRotationIfSheared(even), even), 1e-15) << "not sheared";
  }
  const KFbxXMatrix flat = Axes({1, 1, 0}, {1, 1, 0}, {0, 0, 1});
  EXPECT_EQ(LargestDifference(NearestRotationIfSheared(flat), flat), 0.0);
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
