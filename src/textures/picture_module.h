// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "textures/image.h"
#include "textures/picture_budget.h"

namespace textures {

// Libraries that decode pictures take longer to load than many a model to convert. Each lives in a module of
// its own, which is loaded when the first such picture comes. Tool and module may hold a C++ library each, so
// nothing is thrown from one to the other.

/// Why a module's function failed.
struct PictureModuleFailure {
  /// Ends with a zero. Empty when memory ran out.
  char reason[512] = "";
};

/// The function that every module has. False, with `failure` set, where DecodeImage throws. Takes the image.
using DecodeModulePicture = bool (*)(std::string_view bytes, PictureBudget& budget, Image& image,
                                     PictureModuleFailure& failure);
/// Its name in the module.
inline constexpr const char* kDecodeModulePicture = "fbx2czp_decode_picture";

/// A module that writes such pictures as well has this one. False, with `failure` set, where EncodePng
/// throws. Takes the image.
using EncodeModulePicture = bool (*)(Image& image, std::string& bytes, PictureModuleFailure& failure);
inline constexpr const char* kEncodeModulePicture = "fbx2czp_encode_picture";

}  // namespace textures
