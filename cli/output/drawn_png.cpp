// SPDX-License-Identifier: MIT
#include "output/drawn_png.h"

#include <algorithm>
#include <utility>

#include "textures/png_writer.h"

namespace cli {

std::string ToPng(const preview::Image& drawn) {
  const size_t pixels = drawn.rgb.size() / 3;
  textures::Image image{drawn.width, drawn.height, ts3d::PixelBytes(pixels * 4)};
  for (size_t i = 0; i < pixels; ++i) {
    std::copy_n(&drawn.rgb[3 * i], 3, &image.rgba[4 * i]);
    image.rgba[4 * i + 3] = 255;
  }
  return textures::EncodePng(std::move(image));
}

}  // namespace cli
