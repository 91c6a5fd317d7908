// SPDX-License-Identifier: MIT
//
// Pictures of every kind that textures come in, written as PNG and read again.
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "textures/image_reader.h"
#include "textures/picture_formats.h"
#include "textures/png_writer.h"

namespace {

std::string_view Pixels(const textures::Image& image) {
  return {reinterpret_cast<const char*>(image.rgba.data()), image.rgba.size()};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kLargestInput = 1 << 16;
  constexpr int kLongestSide = 256;
  if (size > kLargestInput) return 0;
  textures::PictureBudget budget{kLongestSide};
  try {
    textures::Image image = textures::DecodeImage({reinterpret_cast<const char*>(data), size}, budget);
    const size_t pixels = static_cast<size_t>(image.width) * static_cast<size_t>(image.height);
    if (image.width < 1 || image.width > kLongestSide || image.height < 1 || image.height > kLongestSide ||
        image.rgba.size() != 4 * pixels) {
      __builtin_trap();
    }
    const std::string before(Pixels(image));
    textures::PictureBudget again{kLongestSide};
    if (Pixels(textures::DecodePng(textures::EncodePng(std::move(image)), again)) != before) __builtin_trap();
  } catch (const std::runtime_error&) {
    // Damaged or of no known kind.
  }
  return 0;
}
