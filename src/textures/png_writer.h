// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "textures/image.h"

namespace textures {

/// `image` as the bytes of a PNG file, without opacity when all of it is opaque.
/// @throws std::runtime_error with the reason when that fails
std::string EncodePng(Image image);

}  // namespace textures
