// SPDX-License-Identifier: MIT
#include "textures/shrink.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace textures {
namespace {

/// A part of an image's pixels, in one direction.
struct Span {
  int begin, end;
};

/// Which of `from` pixels become the pixel `at` of `to`.
Span SpanOf(int at, int from, int to) {
  const auto place = [&](int64_t i) { return static_cast<int>(i * from / to); };
  return {place(at), std::max(place(at) + 1, place(int64_t{at} + 1))};
}

/// The mean colour, weighted by opacity, and the mean opacity.
std::array<uint8_t, 4> MeanOf(const Image& image, Span columns, Span rows) {
  std::array<uint64_t, 3> sums{}, plain{};
  uint64_t opacity = 0, count = 0;
  for (int y = rows.begin; y < rows.end; ++y) {
    const auto line = static_cast<size_t>(y) * static_cast<size_t>(image.width);
    for (int x = columns.begin; x < columns.end; ++x) {
      const uint8_t* pixel = &image.rgba[4 * (line + static_cast<size_t>(x))];
      for (size_t i = 0; i < 3; ++i) {
        sums[i] += uint64_t{pixel[i]} * pixel[3];
        plain[i] += pixel[i];
      }
      opacity += pixel[3];
      ++count;
    }
  }
  std::array<uint8_t, 4> mean{};
  for (size_t i = 0; i < 3; ++i) {
    const uint64_t sum = opacity > 0 ? sums[i] : plain[i], weight = opacity > 0 ? opacity : count;
    mean[i] = static_cast<uint8_t>((sum + weight / 2) / weight);
  }
  mean[3] = static_cast<uint8_t>((opacity + count / 2) / count);
  return mean;
}

}  // namespace

Image ShrinkToFit(Image image, int longestSide) {
  const int longest = std::max(image.width, image.height);
  if (longest <= longestSide) return image;
  const auto fit = [&](int side) {
    return std::max(1, static_cast<int>((int64_t{side} * longestSide + longest / 2) / longest));
  };
  const int width = fit(image.width), height = fit(image.height);
  Image small{width, height, ts3d::PixelBytes(4 * static_cast<size_t>(width) * static_cast<size_t>(height))};
  uint8_t* out = &small.rgba[0];
  for (int y = 0; y < height; ++y) {
    const Span rows = SpanOf(y, image.height, height);
    for (int x = 0; x < width; ++x) {
      const std::array<uint8_t, 4> mean = MeanOf(image, SpanOf(x, image.width, width), rows);
      out = std::copy(mean.begin(), mean.end(), out);
    }
  }
  return small;
}

}  // namespace textures
