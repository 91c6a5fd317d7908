// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace actor {

/// What the start of a ".tga" file says about the picture.
struct PictureHeader {
  int width = 0, height = 0;
  int bits = 0;  ///< of a pixel
};

/// Reads the start of the ".tga" file `bytes`.
/// @return null, or why this cannot be such a picture, as the second half of a sentence
const char* ReadPictureHeader(std::string_view bytes, PictureHeader& header);

}  // namespace actor
