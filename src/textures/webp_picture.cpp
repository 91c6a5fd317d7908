// SPDX-License-Identifier: MIT
#include <webp/decode.h>

#include <stdexcept>

#include "textures/picture_formats.h"

namespace textures {

Image DecodeWebp(std::string_view bytes, PictureBudget& budget) {
  const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
  WebPBitstreamFeatures features;
  if (WebPGetFeatures(data, bytes.size(), &features) != VP8_STATUS_OK) FailDamaged("no WebP header");
  if (features.has_animation) throw std::runtime_error("is an animation, which is not read");
  Image image = MakeImage(features.width, features.height, budget);
  if (!WebPDecodeRGBAInto(data, bytes.size(), image.rgba.data(), image.rgba.size(), image.width * 4)) {
    FailDamaged("its WebP data cannot be decoded");
  }
  return image;
}

}  // namespace textures
