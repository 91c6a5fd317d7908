// SPDX-License-Identifier: MIT
#include <stdexcept>
#include <string>

#include "platform/process.h"
#include "textures/picture_formats.h"
#include "textures/picture_module.h"

namespace cli {
namespace {

Image Decode(ModulePicture kind, std::string_view bytes, int longestSide) {
  static const std::string path = platform::ExecutableFolder() + FBX2CZP_PICTURE_MODULE;
  static const auto decode =
      reinterpret_cast<DecodeModulePicture>(platform::LoadPlugin(path, kDecodeModulePicture));
  if (!decode) throw std::runtime_error("cannot be read, as " + path + " is missing");
  return decode(kind, bytes, longestSide);
}

}  // namespace

Image DecodeJpeg(std::string_view bytes, int longestSide) {
  return Decode(ModulePicture::Jpeg, bytes, longestSide);
}
Image DecodeTiff(std::string_view bytes, int longestSide) {
  return Decode(ModulePicture::Tiff, bytes, longestSide);
}
Image DecodeWebp(std::string_view bytes, int longestSide) {
  return Decode(ModulePicture::Webp, bytes, longestSide);
}
Image DecodeDds(std::string_view bytes, int longestSide) {
  return Decode(ModulePicture::Dds, bytes, longestSide);
}

}  // namespace cli
