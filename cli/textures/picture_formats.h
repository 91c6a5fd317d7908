// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "textures/image.h"

/// The decoders behind DecodeImage, one for each library. All throw std::runtime_error with the reason.
namespace cli {

Image DecodePng(std::string_view bytes, int longestSide);
Image DecodeJpeg(std::string_view bytes, int longestSide);
Image DecodeTiff(std::string_view bytes, int longestSide);
Image DecodeWebp(std::string_view bytes, int longestSide);
Image DecodeDds(std::string_view bytes, int longestSide);
Image DecodePsd(std::string_view bytes, int longestSide);
/// BMP, GIF and every kind of TGA. @throws also for files that are none of these
Image DecodeWithStb(std::string_view bytes, int longestSide);

/// An image of that size, all zero, after CheckSize.
Image MakeImage(int64_t width, int64_t height, int longestSide);

/// Ends decoding: the file is damaged. `detail` is the decoding library's reason.
[[noreturn]] void FailDamaged(const std::string& detail);

}  // namespace cli
