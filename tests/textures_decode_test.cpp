// SPDX-License-Identifier: MIT
//
// Each kind of picture, written by another hand than the one that reads it.
#include <gtest/gtest.h>

#include "support/sample_pictures.h"
#include "textures/image_reader.h"

namespace {

using support::kPictureSide;

void ExpectSample(const support::SamplePicture& picture) {
  SCOPED_TRACE(picture.kind);
  const std::string& file = picture.file;
  const cli::Image image = cli::DecodeImage(file, kPictureSide);
  ASSERT_EQ(image.width, kPictureSide);
  ASSERT_EQ(image.height, kPictureSide);
  const std::string expected = support::SamplePixels();
  for (size_t i = 0; i < expected.size(); ++i) {
    const int value = picture.hasAlpha || i % 4 != 3 ? static_cast<uint8_t>(expected[i]) : 255;
    ASSERT_NEAR(image.rgba[i], value, picture.tolerance) << "byte " << i;
  }
  EXPECT_THROW(cli::DecodeImage(file, kPictureSide - 1), std::runtime_error);
  // Half a file is told from a whole one, and no cut does harm.
  EXPECT_THROW(cli::DecodeImage(file.substr(0, file.size() / 2), kPictureSide), std::runtime_error);
  for (size_t size = 0; size < file.size(); ++size) {
    try {
      cli::DecodeImage(std::string(file.substr(0, size)), kPictureSide);
    } catch (const std::runtime_error&) {
    }
  }
}

TEST(Pictures, OfEveryKindAreReadAndBoundedAndDamageIsNoticed) {
  for (const support::SamplePicture& picture : support::SamplePictures()) ExpectSample(picture);
}

}  // namespace
