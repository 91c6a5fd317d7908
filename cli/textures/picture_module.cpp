// SPDX-License-Identifier: MIT
#include "textures/picture_module.h"

#include "textures/picture_formats.h"

#pragma GCC diagnostic ignored "-Wpragmas"
// Both sides are built together, so that a C++ result is no matter.
#pragma GCC diagnostic ignored "-Wreturn-type-c-linkage"

extern "C" __attribute__((visibility("default"))) cli::Image fbx2czp_decode_picture(cli::ModulePicture kind,
                                                                                    std::string_view bytes,
                                                                                    int longestSide) {
  switch (kind) {
    case cli::ModulePicture::Jpeg:
      return cli::DecodeJpeg(bytes, longestSide);
    case cli::ModulePicture::Tiff:
      return cli::DecodeTiff(bytes, longestSide);
    case cli::ModulePicture::Webp:
      return cli::DecodeWebp(bytes, longestSide);
    case cli::ModulePicture::Dds:
      break;
  }
  return cli::DecodeDds(bytes, longestSide);
}
