// SPDX-License-Identifier: MIT
#include "textures/picture_module.h"

#include "textures/picture_formats.h"
#include "textures/png_writer.h"

#pragma GCC diagnostic ignored "-Wpragmas"
// Both sides are built together, so that a C++ result is no matter.
#pragma GCC diagnostic ignored "-Wreturn-type-c-linkage"

extern "C" __attribute__((visibility("default"))) cli::Image fbx2czp_decode_picture(std::string_view bytes,
                                                                                    int longestSide) {
  return cli::FBX2CZP_DECODER(bytes, longestSide);
}

#ifdef FBX2CZP_ENCODER
extern "C" __attribute__((visibility("default"))) std::string fbx2czp_encode_picture(
    const cli::Image& image) {
  return cli::FBX2CZP_ENCODER(image);
}
#endif
