// SPDX-License-Identifier: MIT
#include "textures/picture_module.h"

#include <cstdio>
#include <exception>
#include <new>
#include <utility>

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
    std::string_view bytes, textures::PictureBudget& budget, textures::Image& image,
    textures::PictureModuleFailure& failure) {
  return Succeeds(failure, [&] { image = textures::FBX2CZP_DECODER(bytes, budget); });
}

#ifdef FBX2CZP_ENCODER
extern "C" __attribute__((visibility("default"))) bool fbx2czp_encode_picture(
    textures::Image& image, std::string& bytes, textures::PictureModuleFailure& failure) {
  return Succeeds(failure, [&] { bytes = textures::FBX2CZP_ENCODER(std::move(image)); });
}
#endif
