// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "textures/image.h"
#include "textures/picture_budget.h"

/// The decoders behind DecodeImage, one for each library. All throw std::runtime_error with the reason.
namespace textures {

Image DecodePng(std::string_view bytes, PictureBudget& budget);
Image DecodeJpeg(std::string_view bytes, PictureBudget& budget);
Image DecodeTiff(std::string_view bytes, PictureBudget& budget);
Image DecodeWebp(std::string_view bytes, PictureBudget& budget);
Image DecodeDds(std::string_view bytes, PictureBudget& budget);
Image DecodePsd(std::string_view bytes, PictureBudget& budget);
/// BMP, GIF and every kind of TGA. @throws also for files that are none of these
Image DecodeWithStb(std::string_view bytes, PictureBudget& budget);

/// An image of that size, all zero, whose pixels are taken from `budget`.
Image MakeImage(int64_t width, int64_t height, PictureBudget& budget);

/// Packs the pixels of an image without transparency as red, green and blue, where they are.
/// @return whether it did
bool DropUselessOpacity(Image& image);

/// Ends decoding when `bytes`, the whole file, are too few for the image of any encoder. For libraries that
/// make up what is missing.
void CheckHoldsData(std::string_view bytes, const Image& image);

/// Ends decoding: the file is damaged. `detail` is the decoding library's reason.
[[noreturn]] void FailDamaged(const std::string& detail);

}  // namespace textures
