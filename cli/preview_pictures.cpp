// SPDX-License-Identifier: MIT
#include "preview_pictures.h"

#include <memory>

#define STBI_ONLY_TGA
#define STBI_NO_STDIO
#define STBI_MAX_DIMENSIONS 8192
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#include <stb/stb_image.h>

namespace cli {

std::optional<preview::Pixels> DecodePicture(const std::string& bytes) {
  preview::Pixels pixels;
  int channels = 0;
  const std::unique_ptr<stbi_uc, void (*)(void*)> rgba(
      stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()), static_cast<int>(bytes.size()),
                            &pixels.width, &pixels.height, &channels, 4),
      stbi_image_free);
  if (!rgba) return std::nullopt;
  const size_t size = static_cast<size_t>(pixels.width) * static_cast<size_t>(pixels.height) * 4;
  pixels.rgba.assign(rgba.get(), rgba.get() + size);
  return pixels;
}

}  // namespace cli
