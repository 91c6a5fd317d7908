// SPDX-License-Identifier: MIT
#include <turbojpeg.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>

#include "textures/picture_formats.h"

namespace textures {
namespace {

struct Destroy {
  void operator()(void* decoder) const { tjDestroy(decoder); }
};

/// Prints to screen: the file holds inverted inks, as every program that writes such files does it.
void InksToColours(Image& image) {
  for (size_t i = 0; i < image.rgba.size(); i += 4) {
    uint8_t* pixel = &image.rgba[i];
    for (int k = 0; k < 3; ++k) pixel[k] = static_cast<uint8_t>(pixel[k] * pixel[3] / 255);
    pixel[3] = 255;
  }
}

}  // namespace

Image DecodeJpeg(std::string_view bytes, PictureBudget& budget) {
  const std::unique_ptr<void, Destroy> decoder(tjInitDecompress());
  if (!decoder) throw std::bad_alloc();
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
  // Windows has 32 bits for it, and no picture that is read is longer.
  const auto size =
      static_cast<unsigned long>(std::min<size_t>(bytes.size(), std::numeric_limits<unsigned long>::max()));
  int width = 0, height = 0, sampling = 0, colours = 0;
  if (tjDecompressHeader3(decoder.get(), data, size, &width, &height, &sampling, &colours) != 0) {
    FailDamaged(tjGetErrorStr2(decoder.get()));
  }
  Image image = MakeImage(width, height, budget);
  const bool isInks = colours == TJCS_CMYK || colours == TJCS_YCCK;
  // A few bytes can hold thousands of refining passes over the whole picture.
  constexpr int kFlags = TJFLAG_LIMITSCANS;
  if (tjDecompress2(decoder.get(), data, size, image.rgba.data(), width, 0, height,
                    isInks ? TJPF_CMYK : TJPF_RGBA, kFlags) != 0) {
    const std::string reason = tjGetErrorStr2(decoder.get());
    if (reason.find("premature end") != std::string::npos) CheckHoldsData(bytes, image);
    // Other warnings are about bytes that nobody misses.
    if (tjGetErrorCode(decoder.get()) == TJERR_FATAL || reason.find("Premature end") != std::string::npos) {
      FailDamaged(reason);
    }
  }
  if (isInks) InksToColours(image);
  return image;
}

}  // namespace textures
