// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace cli {

/// A picture in memory: rows from the top down, four bytes (red, green, blue, alpha) a pixel.
struct Image {
  int width = 0, height = 0;
  std::vector<uint8_t> rgba;
};

}  // namespace cli
