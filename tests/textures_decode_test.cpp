// SPDX-License-Identifier: MIT
//
// Each kind of picture, written by another hand than the one that reads it.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/sample_pictures.h"
#include "textures/image_reader.h"

namespace {

using support::kPictureSide;

textures::Image Decode(const std::string& file, int longestSide, uint64_t pixels) {
  textures::PictureBudget budget{longestSide, pixels};
  return textures::DecodeImage(file, budget);
}

void ExpectSample(const support::SamplePicture& picture) {
  SCOPED_TRACE(picture.kind);
  const std::string& file = picture.file;
  constexpr uint64_t kPixels = kPictureSide * kPictureSide;
  const textures::Image image = Decode(file, kPictureSide, kPixels);
  ASSERT_EQ(image.width, kPictureSide);
  ASSERT_EQ(image.height, kPictureSide);
  const std::string expected = support::SamplePixels();
  for (size_t i = 0; i < expected.size(); ++i) {
    const int value = picture.hasAlpha || i % 4 != 3 ? static_cast<uint8_t>(expected[i]) : 255;
    ASSERT_NEAR(image.rgba[i], value, picture.tolerance) << "byte " << i;
  }
  EXPECT_THROW(Decode(file, kPictureSide - 1, kPixels), std::runtime_error);
  EXPECT_THROW(Decode(file, kPictureSide, kPixels - 1), std::runtime_error);
  // Half a file is told from a whole one, and no cut does harm.
  EXPECT_THROW(Decode(file.substr(0, file.size() / 2), kPictureSide, kPixels), std::runtime_error);
  for (size_t size = 0; size < file.size(); ++size) {
    try {
      Decode(std::string(file.substr(0, size)), kPictureSide, kPixels);
    } catch (const std::runtime_error&) {
    }
  }
}

TEST(Pictures, OfEveryKindAreReadAndBoundedAndDamageIsNoticed) {
  for (const support::SamplePicture& picture : support::SamplePictures()) ExpectSample(picture);
}

#if !defined(__SANITIZE_ADDRESS__)
/// @return bytes that decoding takes at its peak, for each pixel
double PeakPerPixel(const std::string& file, int side) {
  int ends[2];
  if (pipe(ends) != 0) return -1;
  const pid_t child = fork();
  if (child == 0) {
    rusage before{}, after{};
    Decode(support::SamplePictures().front().file, side, textures::kFreePixels);
    getrusage(RUSAGE_SELF, &before);
    Decode(file, side, textures::kFreePixels);
    getrusage(RUSAGE_SELF, &after);
    const double bytes = 1024.0 * static_cast<double>(after.ru_maxrss - before.ru_maxrss);
    _exit(write(ends[1], &bytes, sizeof bytes) == sizeof bytes ? 0 : 1);
  }
  close(ends[1]);
  double bytes = -1;
  EXPECT_EQ(read(ends[0], &bytes, sizeof bytes), static_cast<ssize_t>(sizeof bytes));
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return bytes / side / side;
}

TEST(Pictures, AreInMemoryOnceWhileTheyAreDecoded) {
  constexpr int kSide = 2048;
  std::string runs("\0\0\x0a\0\0\0\0\0\0\0\0\0\0\x08\0\x08\x18\0", 18);
  for (int i = 0; i < kSide * kSide / 128; ++i) runs += "\xff\x10\x20\x30";
  for (const std::string& file : {support::DeepTiffOfOneStrip(kSide), runs}) {
    EXPECT_GT(PeakPerPixel(file, kSide), 3.5);
    EXPECT_LT(PeakPerPixel(file, kSide), 5);
  }
}
#endif

}  // namespace
