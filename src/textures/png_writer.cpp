// SPDX-License-Identifier: MIT
#include "textures/png_writer.h"

#include <png.h>

#include <stdexcept>

#include "textures/picture_formats.h"

namespace textures {

std::string EncodePng(Image image) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.width);
  png.height = static_cast<png_uint_32>(image.height);
  png.format = DropUselessOpacity(image) ? PNG_FORMAT_RGB : PNG_FORMAT_RGBA;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(png);
  // Not a string: what is not written to takes no memory.
  ts3d::PixelBytes file(size);
  if (!png_image_write_to_memory(&png, file.data(), &size, 0, image.rgba.data(), 0, nullptr)) {
    throw std::runtime_error(png.message);
  }
  image.rgba = {};
  return std::string(reinterpret_cast<const char*>(file.data()), size);
}

}  // namespace textures
