// SPDX-License-Identifier: MIT
#include "preview/texture.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace preview {
namespace {

size_t Offset(const Pixels& pixels, int x, int y) {
  return (static_cast<size_t>(y) * static_cast<size_t>(pixels.width) + static_cast<size_t>(x)) * 4;
}

Pixels Halve(const Pixels& from) {
  Pixels to{std::max(from.width / 2, 1), std::max(from.height / 2, 1), {}};
  to.rgba = ts3d::PixelBytes(Offset(to, 0, to.height));
  for (int y = 0; y < to.height; ++y) {
    for (int x = 0; x < to.width; ++x) {
      const int right = std::min(2 * x + 1, from.width - 1), below = std::min(2 * y + 1, from.height - 1);
      const size_t corners[] = {Offset(from, 2 * x, 2 * y), Offset(from, right, 2 * y),
                                Offset(from, 2 * x, below), Offset(from, right, below)};
      for (size_t channel = 0; channel < 4; ++channel) {
        int sum = 2;
        for (const size_t corner : corners) sum += from.rgba[corner + channel];
        to.rgba[Offset(to, x, y) + channel] = static_cast<uint8_t>(sum / 4);
      }
    }
  }
  return to;
}

/// Where `t` lies along `size` repeating texels: two neighbours and the share of the second.
struct Between {
  int first, second;
  double share;
};

Between Locate(double t, int size) {
  if (!(std::abs(t) < 1e9)) t = 0.0;
  const double place = (t - std::floor(t)) * size - 0.5;
  const double whole = std::floor(place);
  const int first = (static_cast<int>(whole) + size) % size;
  return {first, (first + 1) % size, place - whole};
}

}  // namespace

Texture::Texture(Pixels pixels) {
  levels_.push_back(std::move(pixels));
  while (levels_.back().width > 1 || levels_.back().height > 1) levels_.push_back(Halve(levels_.back()));
}

std::array<double, 4> Texture::Sample(double u, double v, double texelsPerPixel) const {
  size_t level = 0;
  while (texelsPerPixel > 1.5 && level + 1 < levels_.size()) {
    texelsPerPixel *= 0.5;
    ++level;
  }
  const Pixels& pixels = levels_[level];
  const Between x = Locate(u, pixels.width), y = Locate(v, pixels.height);
  const size_t corners[] = {Offset(pixels, x.first, y.first), Offset(pixels, x.second, y.first),
                            Offset(pixels, x.first, y.second), Offset(pixels, x.second, y.second)};
  std::array<double, 4> colour{};
  for (size_t channel = 0; channel < 4; ++channel) {
    const auto at = [&](size_t corner) { return pixels.rgba[corners[corner] + channel] / 255.0; };
    const double above = at(0) + x.share * (at(1) - at(0));
    const double below = at(2) + x.share * (at(3) - at(2));
    colour[channel] = above + y.share * (below - above);
  }
  return colour;
}

}  // namespace preview
