// SPDX-License-Identifier: MIT
#include "preview/canvas.h"

namespace preview {

std::array<int, 2> Canvas::Range(double low, double high) const {
  const double limit = size_;
  return {static_cast<int>(std::clamp(std::floor(low), 0.0, limit)),
          static_cast<int>(std::clamp(std::ceil(high), 0.0, limit))};
}

void Canvas::Spend(size_t pixels) {
  constexpr size_t kMostLayers = 100;
  spent_ += pixels;
  if (spent_ / kMostLayers > pixels_.size()) {
    throw TooMuchToDraw(
        "too many of its faces cover the whole picture; this is not a character that can be drawn");
  }
}

void Canvas::Overlay(const Canvas& layer, double opacity) {
  for (size_t i = 0; i < pixels_.size(); ++i) {
    const Pixel& over = layer.pixels_[i];
    Pixel& pixel = pixels_[i];
    if (!over.drawn) continue;
    for (size_t channel = 0; channel < 3; ++channel) {
      const double below = pixel.drawn ? pixel.rgb[channel] : over.rgb[channel];
      pixel.rgb[channel] = static_cast<uint8_t>(std::lround(below + opacity * (over.rgb[channel] - below)));
    }
    pixel.drawn = true;
  }
}

Image Canvas::Reduce(int samples, const Colour& background) const {
  Image image{size_ / samples, size_ / samples, {}};
  const std::array<uint8_t, 3> empty = ToBytes(background);
  const int count = samples * samples;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      std::array<int, 3> sum{};
      for (int i = 0; i < count; ++i) {
        const size_t row = static_cast<size_t>(y * samples + i / samples);
        const Pixel& pixel =
            pixels_[row * static_cast<size_t>(size_) + static_cast<size_t>(x * samples + i % samples)];
        for (size_t channel = 0; channel < 3; ++channel)
          sum[channel] += pixel.drawn ? pixel.rgb[channel] : empty[channel];
      }
      for (const int channel : sum) image.rgb.push_back(static_cast<uint8_t>((channel + count / 2) / count));
    }
  }
  return image;
}

}  // namespace preview
