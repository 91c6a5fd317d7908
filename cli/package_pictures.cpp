// SPDX-License-Identifier: MIT
#include "package_pictures.h"

#include <stdexcept>

#include "actor/picture_header.h"
#include "terminal.h"
#include "textures/image_reader.h"
#include "textures/png_writer.h"

namespace cli {
namespace {

constexpr int kLongestSideOfPicture = 8192;
constexpr uint64_t kMostPixels = uint64_t{512} << 18;  // of 4 bytes: 512 MiB

void WarnLeftOut(const actor::Picture& picture, const std::string& reason) {
  PrintMessage(picture.name, Severity::Warning, reason + "; it is left out");
}

/// Pixels that `picture` decodes to, as far as its start tells.
uint64_t CountPixels(const actor::Picture& picture) {
  actor::PictureHeader header;
  if (actor::ReadPictureHeader(picture.bytes, header)) return 0;
  return static_cast<uint64_t>(header.width) * static_cast<uint64_t>(header.height);
}

/// Pictures with few pixels between see-through and solid are cut out, as hair and leaves; others are glass.
actor::Opacity OpacityOf(const Image& image) {
  size_t see = 0, between = 0;
  for (size_t i = 3; i < image.rgba.size(); i += 4) {
    if (image.rgba[i] < 255) ++see;
    if (image.rgba[i] > 15 && image.rgba[i] < 240) ++between;
  }
  if (see == 0) return actor::Opacity::Opaque;
  return between * 10 > image.rgba.size() / 4 ? actor::Opacity::Blended : actor::Opacity::Cutout;
}

/// Programs that write 32 bits and leave the opacity at 0 throughout mean an opaque picture.
void MakeOpaqueIfInvisible(Image& image) {
  for (size_t i = 3; i < image.rgba.size(); i += 4) {
    if (image.rgba[i] != 0) return;
  }
  for (size_t i = 3; i < image.rgba.size(); i += 4) image.rgba[i] = 255;
}

}  // namespace

Image DecodePicture(const actor::Picture& picture) {
  Image image = DecodeImage(picture.bytes, kLongestSideOfPicture);
  MakeOpaqueIfInvisible(image);
  return image;
}

actor::EncodedPicture EncodePicture(const actor::Picture& picture) {
  try {
    const Image image = DecodePicture(picture);
    return {EncodePng(image), OpacityOf(image)};
  } catch (const std::runtime_error& error) {
    WarnLeftOut(picture, error.what());
    return {};
  }
}

preview::PictureDecoder PixelDecoder() {
  return [left = kMostPixels](const actor::Picture& picture) mutable -> std::optional<preview::Pixels> {
    const uint64_t pixels = CountPixels(picture);
    if (pixels > left) {
      WarnLeftOut(picture, "is too large beside the other pictures");
      return std::nullopt;
    }
    try {
      Image image = DecodePicture(picture);
      left -= pixels;
      return preview::Pixels{image.width, image.height, std::move(image.rgba)};
    } catch (const std::runtime_error& error) {
      WarnLeftOut(picture, error.what());
      return std::nullopt;
    }
  };
}

}  // namespace cli
