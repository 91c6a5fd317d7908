// SPDX-License-Identifier: MIT
#include "textures/png_writer.h"

#include <png.h>

#include <stdexcept>

namespace cli {
namespace {

bool IsOpaque(const Image& image) {
  for (size_t i = 3; i < image.rgba.size(); i += 4) {
    if (image.rgba[i] != 255) return false;
  }
  return true;
}

std::vector<uint8_t> WithoutOpacity(const Image& image) {
  std::vector<uint8_t> rgb;
  rgb.reserve(image.rgba.size() / 4 * 3);
  for (size_t i = 0; i < image.rgba.size(); i += 4) {
    rgb.insert(rgb.end(), {image.rgba[i], image.rgba[i + 1], image.rgba[i + 2]});
  }
  return rgb;
}

}  // namespace

std::string EncodePng(const Image& image) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.width);
  png.height = static_cast<png_uint_32>(image.height);
  const bool isOpaque = IsOpaque(image);
  png.format = isOpaque ? PNG_FORMAT_RGB : PNG_FORMAT_RGBA;
  const std::vector<uint8_t> pixels = isOpaque ? WithoutOpacity(image) : image.rgba;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(png);
  std::string bytes(size, '\0');
  if (!png_image_write_to_memory(&png, bytes.data(), &size, 0, pixels.data(), 0, nullptr)) {
    throw std::runtime_error(png.message);
  }
  bytes.resize(size);
  return bytes;
}

}  // namespace cli
