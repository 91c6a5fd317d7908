// SPDX-License-Identifier: MIT
//
// What the rasteriser puts where.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "preview/picture.h"
#include "support/actors.h"

namespace {

using preview::Image;
using support::Square;
using testing::ElementsAre;
using testing::Gt;
using testing::Lt;

constexpr int kSize = 64;

Image Draw(const actor::Actor& actor, preview::PictureOptions options = {}) {
  options.size = kSize;
  Image drawn;
  preview::DrawPictures(actor, options, support::FourFields,
                        [&](size_t, const Image& image) { drawn = image; });
  return drawn;
}

std::vector<int> PixelAt(const Image& image, int x, int y) {
  const auto at = image.rgb.begin() + (y * image.width + x) * 3;
  return {at, at + 3};
}

int CountUnlikeGround(const Image& image) {
  int count = 0;
  for (int i = 0; i < kSize * kSize; ++i)
    count += PixelAt(image, i % kSize, i / kSize) != PixelAt(image, 0, 0);
  return count;
}

TEST(PreviewPicture, ATriangleCoversWhatItsCornersSay) {
  actor::Actor actor;
  actor.meshes = {Square("m")};
  actor.meshes[0].faces = {{0, 1, 3}};  // right angle in the lower left
  actor.materials = {support::Plain("m", {255, 0, 0, 0})};
  const Image image = Draw(actor);
  const double side = kSize * 0.92;
  EXPECT_NEAR(CountUnlikeGround(image), side * side / 2, 2 * side);
  for (const auto& [x, y] : {std::pair(4, 59), {57, 60}, {4, 8}, {30, 36}})
    EXPECT_THAT(PixelAt(image, x, y), ElementsAre(Gt(150), Lt(40), Lt(40))) << x << " " << y;
  for (const auto& [x, y] : {std::pair(1, 59), {4, 62}, {36, 30}})
    EXPECT_EQ(PixelAt(image, x, y), PixelAt(image, 0, 0)) << x << " " << y;
}

TEST(PreviewPicture, APictureLiesTheRightWayRoundAndItsInvisiblePartsAreHoles) {
  actor::Actor actor;
  actor.meshes = {Square("m")};
  actor.materials = {support::Plain("m", {})};
  actor.materials[0].hasMap = true;
  actor.materials[0].map = "FIELDS.tga";
  actor.pictures = {{"fields.tga", ""}};
  const Image image = Draw(actor);
  EXPECT_THAT(PixelAt(image, 18, 18), ElementsAre(Gt(150), Lt(40), Lt(40)));
  EXPECT_THAT(PixelAt(image, 46, 18), ElementsAre(Lt(40), Gt(150), Lt(40)));
  EXPECT_THAT(PixelAt(image, 18, 46), ElementsAre(Lt(40), Lt(40), Gt(150)));
  EXPECT_EQ(PixelAt(image, 46, 46), PixelAt(image, 0, 0));
  preview::PictureOptions behind;
  behind.views = {{180, 0}};
  EXPECT_THAT(PixelAt(Draw(actor, behind), 46, 18), ElementsAre(Gt(150), Lt(40), Lt(40)));
}

TEST(PreviewPicture, WhatIsNearerHidesWhatIsBehindAndBonesLieOverBoth) {
  actor::Actor actor;
  actor.meshes = {Square("near", 0.2f), Square("far", 0.0f)};
  actor.materials = {support::Plain("near", {0, 255, 0, 0}), support::Plain("far", {255, 0, 0, 0})};
  actor.skeleton.bones = {support::BoneAt("a", {0.5f, 0.1f, -0.5f}),
                          support::BoneAt("b", {0.5f, 0.9f, -0.5f}, 0)};
  preview::PictureOptions options;
  EXPECT_THAT(PixelAt(Draw(actor, options), 32, 32), ElementsAre(Lt(40), Gt(150), Lt(40)));
  options.views = {{180, 0}};
  EXPECT_THAT(PixelAt(Draw(actor, options), 40, 32), ElementsAre(Gt(150), Lt(40), Lt(40)));
  options.views = {{0, 0}};
  options.bones = true;
  const Image withBones = Draw(actor, options);
  EXPECT_THAT(PixelAt(withBones, 32, 44), ElementsAre(Lt(80), Lt(160), Gt(120)));
}

TEST(PreviewPicture, AFewPointsFarAwayDoNotShrinkTheModel) {
  actor::Actor actor;
  actor.meshes.assign(20, Square("m"));
  actor.materials = {support::Plain("m", {255, 0, 0, 0})};
  const int whole = CountUnlikeGround(Draw(actor));
  actor.meshes[7].vertices[2].position = {500, 0, 0};
  EXPECT_GE(CountUnlikeGround(Draw(actor)), whole);
}

TEST(PreviewPicture, NothingThatAnActorHoldsDoesHarm) {
  preview::PictureOptions options;
  options.bones = true;
  options.views = {{0, 0}, {123, 45}, {0, 90}};
  Draw(support::HostileActor(), options);
  Draw(actor::Actor(), options);
  // Faces that lead nowhere do not keep the others from being drawn.
  actor::Actor actor;
  actor.meshes = {Square("m")};
  actor.meshes[0].faces.push_back({0, 1, 9});
  actor.meshes[0].faces.push_back({-1, 1, 2});
  EXPECT_GT(CountUnlikeGround(Draw(actor)), kSize * kSize / 2);
}

}  // namespace
