// SPDX-License-Identifier: MIT
//
// Pictures of every kind that textures come in.
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "textures/image_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kLargestInput = 1 << 16;
  constexpr int kLongestSide = 256;
  if (size > kLargestInput) return 0;
  textures::PictureBudget budget{kLongestSide};
  try {
    const textures::Image image = textures::DecodeImage({reinterpret_cast<const char*>(data), size}, budget);
    const size_t pixels = static_cast<size_t>(image.width) * static_cast<size_t>(image.height);
    if (image.width < 1 || image.width > kLongestSide || image.height < 1 || image.height > kLongestSide ||
        image.rgba.size() != 4 * pixels) {
      __builtin_trap();
    }
  } catch (const std::runtime_error&) {
    // Damaged or of no known kind.
  }
  return 0;
}
