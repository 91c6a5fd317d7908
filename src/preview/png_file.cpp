// SPDX-License-Identifier: MIT
//
// The one place that compiles stb_image_write.
#include "preview/png_file.h"

#include <new>

#define STBI_WRITE_NO_STDIO
#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>

namespace preview {
namespace {

void Append(void* user, void* data, int size) {
  static_cast<std::string*>(user)->append(static_cast<const char*>(data), static_cast<size_t>(size));
}

std::string Encode(int width, int height, int channels, const std::vector<uint8_t>& bytes) {
  std::string png;
  if (!stbi_write_png_to_func(Append, &png, width, height, channels, bytes.data(), width * channels))
    throw std::bad_alloc();
  return png;
}

}  // namespace

std::string EncodePng(const Image& image) { return Encode(image.width, image.height, 3, image.rgb); }
std::string EncodePng(const Pixels& pixels) { return Encode(pixels.width, pixels.height, 4, pixels.rgba); }

}  // namespace preview
