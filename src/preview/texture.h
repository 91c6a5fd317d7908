// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "actor/actor.h"
#include "core/pixel_bytes.h"

namespace preview {

/// A decoded picture: 4 bytes (red, green, blue, opacity) for each pixel, from the upper left.
struct Pixels {
  int width = 0, height = 0;
  ts3d::PixelBytes rgba;
};

/// Decodes a picture of a package; nothing when it cannot be read. Whoever draws brings it along: reading
/// picture files is not the drawing's business.
using PictureDecoder = std::function<std::optional<Pixels>(const actor::Picture& picture)>;

/// A picture as a surface shows it, with smaller copies for surfaces that are far away.
class Texture {
 public:
  /// @param pixels at least one
  explicit Texture(Pixels pixels);

  /// Width and height in pixels.
  std::array<int, 2> Size() const { return {levels_.front().width, levels_.front().height}; }

  /// Red, green, blue and opacity from 0 to 1 at (u, v), v counted from the top; repeats outside 0 to 1.
  /// `texelsPerPixel` tells how much the picture is shrunk on screen.
  std::array<double, 4> Sample(double u, double v, double texelsPerPixel) const;

 private:
  std::vector<Pixels> levels_;  ///< each half as large as the one before
};

}  // namespace preview
