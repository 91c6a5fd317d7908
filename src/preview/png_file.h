// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "preview/canvas.h"
#include "preview/texture.h"

namespace preview {

/// The bytes of a PNG file. @throws std::bad_alloc
std::string EncodePng(const Image& image);
std::string EncodePng(const Pixels& pixels);

}  // namespace preview
