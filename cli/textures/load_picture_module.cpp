// SPDX-License-Identifier: MIT
#include <stdexcept>
#include <string>

#include "platform/process.h"
#include "textures/picture_formats.h"
#include "textures/picture_module.h"
#include "textures/png_writer.h"

namespace cli {
namespace {

/// The function `symbol` of the module for pictures of this kind, which is loaded for it.
template <typename Function>
Function LoadFunction(const char* kind, const char* symbol) {
  const std::string path =
      platform::ExecutableFolder() + FBX2CZP_MODULE_FOLDER + kind + FBX2CZP_MODULE_ENDING;
  void* const function = platform::LoadPlugin(path, symbol);
  if (!function) throw std::runtime_error("needs " + path + ", which is missing");
  return reinterpret_cast<Function>(function);
}

DecodeModulePicture LoadDecoder(const char* kind) {
  return LoadFunction<DecodeModulePicture>(kind, kDecodeModulePicture);
}

}  // namespace

Image DecodePng(std::string_view bytes, int longestSide) {
  static const DecodeModulePicture decode = LoadDecoder("png");
  return decode(bytes, longestSide);
}

Image DecodeJpeg(std::string_view bytes, int longestSide) {
  static const DecodeModulePicture decode = LoadDecoder("jpeg");
  return decode(bytes, longestSide);
}

Image DecodeTiff(std::string_view bytes, int longestSide) {
  static const DecodeModulePicture decode = LoadDecoder("tiff");
  return decode(bytes, longestSide);
}

Image DecodeWebp(std::string_view bytes, int longestSide) {
  static const DecodeModulePicture decode = LoadDecoder("webp");
  return decode(bytes, longestSide);
}

Image DecodeDds(std::string_view bytes, int longestSide) {
  static const DecodeModulePicture decode = LoadDecoder("dds");
  return decode(bytes, longestSide);
}

std::string EncodePng(const Image& image) {
  static const auto encode = LoadFunction<EncodeModulePicture>("png", kEncodeModulePicture);
  return encode(image);
}

}  // namespace cli
