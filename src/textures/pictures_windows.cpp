// SPDX-License-Identifier: MIT
//
// Debian has no picture libraries for Windows: stb_image reads what it can there, and the rest is refused.
#include <stdexcept>

#include "textures/picture_formats.h"

namespace textures {
namespace {

[[noreturn]] void Refuse(const std::string& kind) {
  throw std::runtime_error("is a " + kind +
                           " picture, which fbx2czp does not read on Windows; save it as PNG or TGA");
}

}  // namespace

Image DecodePng(std::string_view bytes, PictureBudget& budget) { return DecodeWithStb(bytes, budget); }
Image DecodeJpeg(std::string_view bytes, PictureBudget& budget) { return DecodeWithStb(bytes, budget); }
Image DecodeTiff(std::string_view, PictureBudget&) { Refuse("TIFF"); }
Image DecodeWebp(std::string_view, PictureBudget&) { Refuse("WebP"); }
Image DecodeDds(std::string_view, PictureBudget&) { Refuse("DDS"); }

}  // namespace textures
