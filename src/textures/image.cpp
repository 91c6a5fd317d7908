// SPDX-License-Identifier: MIT
#include <algorithm>
#include <stdexcept>

#include "textures/image_reader.h"
#include "textures/picture_formats.h"

namespace textures {
namespace {

std::string SizeText(int64_t width, int64_t height) {
  return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

}  // namespace

void CheckSize(int64_t width, int64_t height, int longestSide) {
  if (width <= 0 || height <= 0) FailDamaged("it has no pixels");
  if (std::max(width, height) <= std::min(longestSide, kLargestSide)) return;
  throw std::runtime_error("is too large: " + SizeText(width, height) + ", the limit is " +
                           std::to_string(longestSide) + " a side");
}

void PictureBudget::Take(int64_t width, int64_t height) {
  CheckSize(width, height, longestSide);
  const uint64_t wanted = static_cast<uint64_t>(width) * static_cast<uint64_t>(height);
  if (wanted > pixels) {
    throw std::runtime_error("is too large beside the other pictures: " + SizeText(width, height));
  }
  pixels -= wanted;
}

Image MakeImage(int64_t width, int64_t height, PictureBudget& budget) {
  budget.Take(width, height);
  return {static_cast<int>(width), static_cast<int>(height),
          ts3d::PixelBytes(static_cast<size_t>(width) * static_cast<size_t>(height) * 4)};
}

bool DropUselessOpacity(Image& image) {
  for (size_t i = 3; i < image.rgba.size(); i += 4) {
    if (image.rgba[i] != 255) return false;
  }
  const size_t pixels = image.rgba.size() / 4;
  for (size_t i = 0; i < pixels; ++i) {
    for (size_t k = 0; k < 3; ++k) image.rgba[3 * i + k] = image.rgba[4 * i + k];
  }
  image.rgba.Resize(3 * pixels);
  return true;
}

void CheckHoldsData(std::string_view bytes, const Image& image) {
  constexpr uint64_t kMostPixelsPerByte = 16384;
  const uint64_t pixels = static_cast<uint64_t>(image.width) * static_cast<uint64_t>(image.height);
  if (pixels / kMostPixelsPerByte <= bytes.size()) return;
  FailDamaged("it holds no data for its " + SizeText(image.width, image.height));
}

void FailDamaged(const std::string& detail) { throw std::runtime_error("is damaged (" + detail + ")"); }

}  // namespace textures
