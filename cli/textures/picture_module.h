// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "textures/image.h"

namespace cli {

/// The decoders whose libraries take longer to load than many a model to convert. They live in a module of
/// their own, which is loaded when the first such picture comes.
enum class ModulePicture { Jpeg, Tiff, Webp, Dds };

/// The module's one function. Throws like DecodeImage.
using DecodeModulePicture = Image (*)(ModulePicture kind, std::string_view bytes, int longestSide);

/// Its name in the module.
inline constexpr const char* kDecodeModulePicture = "fbx2czp_decode_picture";

}  // namespace cli
