// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace textures {

/// Longest side, in pixels, that a limit can allow.
inline constexpr int kLargestSide = 16384;

/// Pixels that pictures may have however small their files are: eight of 4096 x 4096.
inline constexpr uint64_t kFreePixels = uint64_t{128} << 20;

/// What the pictures of one model or package may decode to, all together. A file of a few bytes can be a
/// picture of millions of pixels, and a model can name it under a thousand names.
struct PictureBudget {
  int longestSide;                ///< most pixels that a side may have, at most kLargestSide
  uint64_t pixels = kFreePixels;  ///< that are left

  /// Adds what a file of that many bytes may come to beyond kFreePixels.
  void AddFile(uint64_t bytes) {
    // A photograph of a million pixels takes a hundred thousand bytes, a drawing twenty thousand.
    constexpr uint64_t kPixelsPerByte = 64;
    pixels += bytes * kPixelsPerByte;
  }

  /// Takes the pixels of a picture, before any of them is decoded.
  /// @throws std::runtime_error when the size is not above zero, above the limit or more than is left
  void Take(int64_t width, int64_t height);
};

}  // namespace textures
