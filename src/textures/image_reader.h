// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/file_system.h"
#include "textures/image.h"
#include "textures/picture_budget.h"

namespace textures {

/// @throws std::runtime_error when the size is not above zero or above the limit
void CheckSize(int64_t width, int64_t height, int longestSide);

/// Decodes a picture file whose content is `bytes`. The content decides on its kind; the pixels are taken
/// from `budget` before any is decoded or memory taken for it.
/// @throws std::runtime_error with the reason, as the second
/// half of a sentence that begins with the name of the file
Image DecodeImage(std::string_view bytes, PictureBudget& budget);

/// DecodeImage for the file `path`, whose size is added to `budget` first.
Image ReadImage(const platform::fs::path& path, PictureBudget& budget);

}  // namespace textures
