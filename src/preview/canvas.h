// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <vector>

#include "preview/camera.h"

namespace preview {

/// Red, green, blue from 0 to 1.
using Colour = std::array<double, 3>;

/// A finished picture: 3 bytes for each pixel, from the upper left.
struct Image {
  int width = 0, height = 0;
  std::vector<uint8_t> rgb;
};

/// Thrown when triangles cover a canvas so often that drawing would take minutes.
struct TooMuchToDraw : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A corner of a triangle on the canvas.
struct Corner {
  Seen seen;  ///< in pixels of the canvas
  Vector normal{};
  double u = 0.0, v = 0.0;
};

/// A square of pixels with depth. Pixels that nothing was drawn to stay empty.
class Canvas {
 public:
  explicit Canvas(int size) : size_(size), pixels_(static_cast<size_t>(size) * static_cast<size_t>(size)) {}

  int Size() const { return size_; }

  /// Draws a triangle of either winding. `shade` gets each visible pixel as a Corner, interpolated in
  /// perspective, and returns its Colour or nothing for a hole.
  /// @throws TooMuchToDraw when all triangles so far cover the canvas more than a hundred times
  template <class Shade>
  void Draw(const std::array<Corner, 3>& corners, const Shade& shade);

  /// Lays `layer`, of the same size, over this canvas.
  void Overlay(const Canvas& layer, double opacity);

  /// The picture with `samples` x `samples` pixels of the canvas for each of its own.
  Image Reduce(int samples, const Colour& background) const;

 private:
  struct Pixel {
    std::array<uint8_t, 3> rgb{};
    bool drawn = false;
    float nearness = 0.0f;
  };

  /// First and one past the last pixel whose middle may lie between `low` and `high`.
  std::array<int, 2> Range(double low, double high) const;
  Pixel& At(int x, int y) {
    return pixels_[static_cast<size_t>(y) * static_cast<size_t>(size_) + static_cast<size_t>(x)];
  }

  /// Counts pixels that a triangle looks at.
  void Spend(size_t pixels);

  int size_;
  std::vector<Pixel> pixels_;
  size_t spent_ = 0;
};

inline std::array<uint8_t, 3> ToBytes(const Colour& colour) {
  std::array<uint8_t, 3> bytes{};
  for (size_t i = 0; i < 3; ++i)
    bytes[i] = static_cast<uint8_t>(std::lround(std::clamp(colour[i], 0.0, 1.0) * 255.0));
  return bytes;
}

template <class Shade>
void Canvas::Draw(const std::array<Corner, 3>& corners, const Shade& shade) {
  const Seen &a = corners[0].seen, &b = corners[1].seen, &c = corners[2].seen;
  const double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
  if (!std::isfinite(area) || area == 0.0) return;
  const auto [firstX, endX] = Range(std::min({a.x, b.x, c.x}), std::max({a.x, b.x, c.x}));
  const auto [firstY, endY] = Range(std::min({a.y, b.y, c.y}), std::max({a.y, b.y, c.y}));
  Spend(static_cast<size_t>(endX - firstX) * static_cast<size_t>(endY - firstY));
  for (int y = firstY; y < endY; ++y) {
    for (int x = firstX; x < endX; ++x) {
      const double px = x + 0.5, py = y + 0.5;
      const double wa = ((b.x - px) * (c.y - py) - (b.y - py) * (c.x - px)) / area;
      const double wb = ((c.x - px) * (a.y - py) - (c.y - py) * (a.x - px)) / area;
      const double wc = 1.0 - wa - wb;
      if (wa < 0.0 || wb < 0.0 || wc < 0.0) continue;
      const double nearness = wa * a.nearness + wb * b.nearness + wc * c.nearness;
      Pixel& pixel = At(x, y);
      if (pixel.drawn && static_cast<float>(nearness) <= pixel.nearness) continue;
      // Shares of the corners in the model, where the nearer ones count more than on the canvas.
      const double sa = wa * a.nearness / nearness, sb = wb * b.nearness / nearness, sc = 1.0 - sa - sb;
      Corner point;
      point.seen = {px, py, nearness};
      point.normal = corners[0].normal * sa + corners[1].normal * sb + corners[2].normal * sc;
      point.u = corners[0].u * sa + corners[1].u * sb + corners[2].u * sc;
      point.v = corners[0].v * sa + corners[1].v * sb + corners[2].v * sc;
      const std::optional<Colour> colour = shade(point);
      if (colour) pixel = {ToBytes(*colour), true, static_cast<float>(nearness)};
    }
  }
}

}  // namespace preview
