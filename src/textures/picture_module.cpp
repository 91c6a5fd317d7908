// SPDX-License-Identifier: MIT
#include "textures/picture_module.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <string>

#include "textures/picture_budget.h"
#include "textures/picture_formats.h"
#include "textures/png_writer.h"

namespace {

/// Runs `work`, and turns what it throws into a failure.
template <typename Work>
bool Succeeds(textures::PictureModuleFailure& failure, Work work) noexcept {
  try {
    work();
    return true;
  } catch (const std::bad_alloc&) {
    failure.reason[0] = '\0';
  } catch (const std::exception& error) {
    std::snprintf(failure.reason, sizeof failure.reason, "%s", error.what());
  }
  return false;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) bool fbx2czp_decode_picture(
    const uint8_t* bytes, size_t size, int32_t longestSide, uint64_t* pixelsLeft,
    textures::PlainPicture* picture, textures::PictureModuleFailure* failure) {
  textures::PictureBudget budget{longestSide, *pixelsLeft};
  const bool isDecoded = Succeeds(*failure, [&] {
    textures::Image image = textures::FBX2CZP_DECODER({reinterpret_cast<const char*>(bytes), size}, budget);
    const size_t pixelSize = image.rgba.size();
    *picture = {image.width, image.height, image.rgba.Release(), pixelSize};
  });
  *pixelsLeft = budget.pixels;
  return isDecoded;
}

#ifdef FBX2CZP_ENCODER
extern "C" __attribute__((visibility("default"))) bool fbx2czp_encode_picture(
    textures::PlainPicture picture, textures::PlainBytes* bytes, textures::PictureModuleFailure* failure) {
  return Succeeds(*failure, [&] {
    const std::string file = textures::FBX2CZP_ENCODER(
        {picture.width, picture.height, ts3d::PixelBytes(picture.rgba, picture.size)});
    ts3d::PixelBytes copy(file.size());
    std::memcpy(copy.data(), file.data(), file.size());
    *bytes = {copy.Release(), file.size()};
  });
}
#endif
