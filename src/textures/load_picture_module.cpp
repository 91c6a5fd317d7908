// SPDX-License-Identifier: MIT
#include <new>
#include <stdexcept>
#include <string>

#include "platform/helper_process.h"
#include "platform/process.h"
#include "textures/picture_formats.h"
#include "textures/picture_module.h"
#include "textures/png_writer.h"

namespace textures {
namespace {

/// The function `symbol` of the module for pictures of this kind, which is loaded for it.
template <typename Function>
Function LoadFunction(const char* kind, const char* symbol) {
  const std::string path = platform::FindOwnPart(std::string(kind) + FBX2CZP_MODULE_ENDING);
  if (void* const function = platform::LoadPlugin(path, symbol)) return reinterpret_cast<Function>(function);
  throw std::runtime_error("needs " + path + ", which is missing");
}

[[noreturn]] void Throw(const PictureModuleFailure& failure) {
  if (*failure.reason == '\0') throw std::bad_alloc();
  throw std::runtime_error(failure.reason);
}

/// Has pictures of one kind decoded by their module.
class ModuleDecoder {
 public:
  explicit ModuleDecoder(const char* kind)
      : decode_(LoadFunction<DecodeModulePicture>(kind, kDecodeModulePicture)) {}

  Image operator()(std::string_view bytes, PictureBudget& budget) const {
    PlainPicture picture{};
    PictureModuleFailure failure{};
    const auto* const data = reinterpret_cast<const uint8_t*>(bytes.data());
    if (!decode_(data, bytes.size(), budget.longestSide, &budget.pixels, &picture, &failure)) Throw(failure);
    return {picture.width, picture.height, ts3d::PixelBytes(picture.rgba, picture.size)};
  }

 private:
  DecodeModulePicture decode_;
};

}  // namespace

Image DecodePng(std::string_view bytes, PictureBudget& budget) {
  static const ModuleDecoder decode("png");
  return decode(bytes, budget);
}

Image DecodeJpeg(std::string_view bytes, PictureBudget& budget) {
  static const ModuleDecoder decode("jpeg");
  return decode(bytes, budget);
}

Image DecodeTiff(std::string_view bytes, PictureBudget& budget) {
  static const ModuleDecoder decode("tiff");
  return decode(bytes, budget);
}

Image DecodeWebp(std::string_view bytes, PictureBudget& budget) {
  static const ModuleDecoder decode("webp");
  return decode(bytes, budget);
}

Image DecodeDds(std::string_view bytes, PictureBudget& budget) {
  static const ModuleDecoder decode("dds");
  return decode(bytes, budget);
}

std::string EncodePng(Image image) {
  static const auto encode = LoadFunction<EncodeModulePicture>("png", kEncodeModulePicture);
  PlainBytes bytes{};
  PictureModuleFailure failure{};
  const size_t size = image.rgba.size();
  if (!encode({image.width, image.height, image.rgba.Release(), size}, &bytes, &failure)) Throw(failure);
  const ts3d::PixelBytes owned(bytes.data, bytes.size);
  return {reinterpret_cast<const char*>(bytes.data), bytes.size};
}

}  // namespace textures
