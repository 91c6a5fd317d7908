// SPDX-License-Identifier: MIT
#include "output/package_pictures.h"

#include <optional>
#include <stdexcept>
#include <utility>

#include "terminal/terminal.h"
#include "textures/image_reader.h"
#include "textures/png_writer.h"

namespace cli {
namespace {

constexpr int kLongestSideOfPicture = 8192;

void WarnLeftOut(const actor::Picture& picture, const std::string& reason, Messages& messages) {
  messages.Warning(picture.name, reason + "; it is left out");
}

/// Pictures with few pixels between see-through and solid are cut out, as hair and leaves; others are glass.
actor::Opacity OpacityOf(const textures::Image& image) {
  size_t see = 0, between = 0;
  for (size_t i = 3; i < image.rgba.size(); i += 4) {
    if (image.rgba[i] < 255) ++see;
    if (image.rgba[i] > 15 && image.rgba[i] < 240) ++between;
  }
  if (see == 0) return actor::Opacity::Opaque;
  return between * 10 > image.rgba.size() / 4 ? actor::Opacity::Blended : actor::Opacity::Cutout;
}

/// Programs that write 32 bits and leave the opacity at 0 throughout mean an opaque picture.
void MakeOpaqueIfInvisible(textures::Image& image) {
  for (size_t i = 3; i < image.rgba.size(); i += 4) {
    if (image.rgba[i] != 0) return;
  }
  for (size_t i = 3; i < image.rgba.size(); i += 4) image.rgba[i] = 255;
}

/// Decodes a picture of a package as it is meant to be seen; nothing, after a warning, when that fails.
std::optional<textures::Image> DecodePicture(const actor::Picture& picture, textures::PictureBudget& budget,
                                             Messages& messages) {
  try {
    textures::Image image = textures::DecodeImage(picture.bytes, budget);
    MakeOpaqueIfInvisible(image);
    return image;
  } catch (const std::runtime_error& error) {
    WarnLeftOut(picture, error.what(), messages);
    return std::nullopt;
  }
}

}  // namespace

actor::PictureEncoder PngEncoder(Messages& messages) {
  return [&messages, budget = textures::PictureBudget{kLongestSideOfPicture}](
             const actor::Picture& picture) mutable -> actor::EncodedPicture {
    budget.AddFile(picture.bytes.size());
    std::optional<textures::Image> image = DecodePicture(picture, budget, messages);
    if (!image) return {};
    const actor::Opacity opacity = OpacityOf(*image);
    try {
      return {textures::EncodePng(std::move(*image)), opacity};
    } catch (const std::runtime_error& error) {
      WarnLeftOut(picture, error.what(), messages);
      return {};
    }
  };
}

preview::PictureDecoder PixelDecoder(Messages& messages) {
  return [&messages, budget = textures::PictureBudget{kLongestSideOfPicture}](
             const actor::Picture& picture) mutable -> std::optional<preview::Pixels> {
    std::optional<textures::Image> image = DecodePicture(picture, budget, messages);
    if (!image) return std::nullopt;
    return preview::Pixels{image->width, image->height, std::move(image->rgba)};
  };
}

}  // namespace cli
