// SPDX-License-Identifier: MIT
#include <algorithm>
#include <stdexcept>

#include "textures/image_reader.h"
#include "textures/picture_formats.h"

namespace cli {

void CheckSize(int64_t width, int64_t height, int longestSide) {
  if (width <= 0 || height <= 0) FailDamaged("it has no pixels");
  if (std::max(width, height) <= std::min(longestSide, kLargestSide)) return;
  throw std::runtime_error("is too large: " + std::to_string(width) + " x " + std::to_string(height) +
                           " pixels, the limit is " + std::to_string(longestSide) + " a side");
}

Image MakeImage(int64_t width, int64_t height, int longestSide) {
  CheckSize(width, height, longestSide);
  Image image{static_cast<int>(width), static_cast<int>(height), {}};
  image.rgba.resize(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
  return image;
}

void FailDamaged(const std::string& detail) { throw std::runtime_error("is damaged (" + detail + ")"); }

}  // namespace cli
