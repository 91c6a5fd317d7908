// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "textures/image.h"

namespace cli {

/// Longest side, in pixels, that a limit can allow.
inline constexpr int kLargestSide = 16384;

/// @throws std::runtime_error when the size is not above zero or above the limit
void CheckSize(int64_t width, int64_t height, int longestSide);

/// Decodes a picture file whose content is `bytes`. The content decides on its kind; the size is checked
/// before any pixel is decoded or memory taken for it.
/// @param longestSide most pixels that a side may have, at most kLargestSide
/// @throws std::runtime_error with the reason, as the second half of a sentence that begins with the name of
/// the file
Image DecodeImage(std::string_view bytes, int longestSide);

/// DecodeImage for the file `path`.
Image ReadImage(const std::filesystem::path& path, int longestSide);

}  // namespace cli
