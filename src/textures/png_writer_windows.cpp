// SPDX-License-Identifier: MIT
#include <stdexcept>

#include "textures/picture_formats.h"
#include "textures/png_writer.h"

#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace textures {

std::string EncodePng(Image image) {
  const int channels = DropUselessOpacity(image) ? 3 : 4;
  std::string png;
  const auto append = [](void* to, void* data, int size) {
    static_cast<std::string*>(to)->append(static_cast<const char*>(data), static_cast<size_t>(size));
  };
  if (!stbi_write_png_to_func(append, &png, image.width, image.height, channels, image.rgba.data(),
                              image.width * channels)) {
    throw std::runtime_error("cannot be written as PNG");
  }
  return png;
}

}  // namespace textures
