// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "scene/math/angles.h"

namespace {

// True values, rounded once. Common mathematics libraries miss the second and third by a bit.
TEST(Angles, AreRoundedTheSameOnEverySystem) {
  constexpr double kSines[][3] = {{0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53, -0x1.0000000000000p+0},
                                  {0x1.2aa3e290ca18p-2, 0x1.266cb942d06d1p-2, 0x1.ea61464c8efd9p-1},
                                  {-0x1.26b754d42049p+1, -0x1.7cf515cdf58b5p-1, -0x1.5613448f2eea2p-1},
                                  {0x1.7d784p+26, 0x1.dcffca623a20bp-1, -0x1.741b388a8c029p-2},
                                  {0x1.19799812dea11p-40, 0x1.19799812dea11p-40, 0x1p+0},
                                  {0.0, 0.0, 1.0}};
  for (const auto& [angle, sine, cosine] : kSines) {
    EXPECT_EQ(scene::SinCos(angle).sine, sine) << angle;
    EXPECT_EQ(scene::SinCos(angle).cosine, cosine) << angle;
    EXPECT_EQ(scene::SinCos(-angle).sine, -sine) << angle;
  }
  EXPECT_EQ(scene::ArcTangent(-0x1.0ce0ebdf77504p+0, 0x1.582bf65d7771ap+2), -0x1.8b04e3b2d1a7dp-3);
  EXPECT_EQ(scene::ArcTangent(-0x1.30f9133f4de9p+0, 0x1.a8c1ed6f37c8ep+2), -0x1.6bbd2ae0d4897p-3);
  EXPECT_EQ(scene::ArcTangent(0.0, -1.0), 0x1.921fb54442d18p+1);
}

TEST(Angles, OfAnySizeHaveASine) {
  for (const double angle : {1e9, -1e300, std::numeric_limits<double>::max()}) {
    const auto [sine, cosine] = scene::SinCos(angle);
    EXPECT_NEAR(sine * sine + cosine * cosine, 1.0, 1e-15) << angle;
  }
  EXPECT_TRUE(std::isnan(scene::SinCos(std::numeric_limits<double>::infinity()).sine));
  EXPECT_NEAR(scene::ArcTangent(1e300, 1e300), 0x1.921fb54442d18p-1, 1e-15);
}

}  // namespace
