// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace support {

inline constexpr int kPictureSide = 8;  ///< pixels of all sample pictures

/// One picture, written by another hand than the one that reads it.
struct SamplePicture {
  const char* kind;
  std::string file;
  int tolerance;  ///< how far a decoded byte may be off
  bool hasAlpha;
};

/// The pixels of all sample pictures: upper half (200, 40, 80),
/// lower half (16, 160, 240) and half transparent.
std::string SamplePixels();

/// A black TIFF picture of four samples of 16 bits, packed in one piece.
std::string DeepTiffOfOneStrip(int side);

/// The picture in every kind of file.
std::vector<SamplePicture> SamplePictures();

}  // namespace support
