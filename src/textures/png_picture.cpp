// SPDX-License-Identifier: MIT
#include <png.h>

#include "textures/picture_formats.h"

namespace textures {

Image DecodePng(std::string_view bytes, PictureBudget& budget) {
  struct Reader : png_image {
    Reader() : png_image() { version = PNG_IMAGE_VERSION; }
    ~Reader() { png_image_free(this); }
  } png;
  if (!png_image_begin_read_from_memory(&png, bytes.data(), bytes.size())) FailDamaged(png.message);
  Image image = MakeImage(png.width, png.height, budget);
  png.format = PNG_FORMAT_RGBA;
  // Without it 16-bit pictures are taken for linear light.
  png.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;
  if (!png_image_finish_read(&png, nullptr, image.rgba.data(), 0, nullptr)) FailDamaged(png.message);
  return image;
}

}  // namespace textures
