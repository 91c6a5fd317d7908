// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace textures {

// Libraries that decode pictures take longer to load than many a model to convert. Each lives in a module of
// its own, which is loaded when the first such picture comes. Tool and module may hold a C++ library each, so
// plain memory of the C library is all that goes from one to the other.

/// A picture: rows from the top down, red, green, blue and opacity of each pixel.
struct PlainPicture {
  int32_t width, height;
  uint8_t* rgba;  ///< by malloc
  size_t size;    ///< of `rgba`
};

/// Bytes that malloc gave.
struct PlainBytes {
  uint8_t* data;
  size_t size;
};

/// Why a module's function failed.
struct PictureModuleFailure {
  /// Ends with a zero. Empty when memory ran out.
  char reason[512];
};

/// The function that every module has. `picture` is the caller's on success.
/// @param longestSide, pixelsLeft  the PictureBudget; what the picture takes of it is taken
/// @return false with `failure` set where the decoder throws
using DecodeModulePicture = bool (*)(const uint8_t* bytes, size_t size, int32_t longestSide,
                                     uint64_t* pixelsLeft, PlainPicture* picture,
                                     PictureModuleFailure* failure);
/// Its name in the module.
inline constexpr const char* kDecodeModulePicture = "fbx2czp_decode_picture";

/// A module that writes such pictures as well has this one. It takes the memory of `picture`; `bytes` are the
/// caller's on success.
/// @return false with `failure` set where the encoder throws
using EncodeModulePicture = bool (*)(PlainPicture picture, PlainBytes* bytes, PictureModuleFailure* failure);
inline constexpr const char* kEncodeModulePicture = "fbx2czp_encode_picture";

}  // namespace textures
