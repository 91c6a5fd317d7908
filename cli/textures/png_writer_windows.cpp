// SPDX-License-Identifier: MIT
#include <algorithm>
#include <stdexcept>

#include "textures/png_writer.h"

#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace cli {

std::string EncodePng(const Image& image) {
  bool isOpaque = true;
  for (size_t at = 3; at < image.rgba.size(); at += 4) isOpaque &= image.rgba[at] == 255;
  std::vector<uint8_t> pixels;
  pixels.reserve(image.rgba.size());
  for (size_t at = 0; at < image.rgba.size(); ++at) {
    if (!isOpaque || at % 4 != 3) pixels.push_back(image.rgba[at]);
  }
  std::string png;
  const auto append = [](void* to, void* data, int size) {
    static_cast<std::string*>(to)->append(static_cast<const char*>(data), static_cast<size_t>(size));
  };
  const int channels = isOpaque ? 3 : 4;
  if (!stbi_write_png_to_func(append, &png, image.width, image.height, channels, pixels.data(),
                              image.width * channels)) {
    throw std::runtime_error("cannot be written as PNG");
  }
  return png;
}

}  // namespace cli
