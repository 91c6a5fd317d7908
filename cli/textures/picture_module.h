// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "textures/image.h"

namespace cli {

/// Libraries that decode pictures take longer to load than many a model to convert. Each lives in a module of
/// its own, which is loaded when the first such picture comes. This is the function that every module has;
/// it throws like DecodeImage.
using DecodeModulePicture = Image (*)(std::string_view bytes, int longestSide);
/// Its name in the module.
inline constexpr const char* kDecodeModulePicture = "fbx2czp_decode_picture";

/// A module that writes such pictures as well has this one. It throws like EncodePng.
using EncodeModulePicture = std::string (*)(const Image& image);
inline constexpr const char* kEncodeModulePicture = "fbx2czp_encode_picture";

}  // namespace cli
