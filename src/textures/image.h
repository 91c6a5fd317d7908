// SPDX-License-Identifier: MIT
#pragma once

#include "core/pixel_bytes.h"

namespace textures {

/// A picture in memory: rows from the top down, four bytes (red, green, blue, alpha) a pixel.
struct Image {
  int width = 0, height = 0;
  ts3d::PixelBytes rgba;
};

}  // namespace textures
