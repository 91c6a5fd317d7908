// SPDX-License-Identifier: MIT
//
// The one place that compiles stb_image, with the decoders that no library maintained for itself does.
#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "textures/image_reader.h"
#include "textures/picture_formats.h"

#define STBI_ONLY_BMP
#define STBI_ONLY_GIF
#define STBI_ONLY_TGA
#define STBI_NO_STDIO
#define STBI_FAILURE_USERMSG
#define STBI_MAX_DIMENSIONS textures::kLargestSide
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#include <stb/stb_image.h>

namespace textures {
namespace {

/// stb_image takes missing bytes for zeros; this notices.
struct Source {
  std::string_view bytes;
  size_t at = 0;
  bool endedEarly = false;
};

int Read(void* user, char* to, int size) {
  auto& source = *static_cast<Source*>(user);
  const size_t count = std::min(source.bytes.size() - source.at, static_cast<size_t>(size));
  if (count == 0 && size > 0) source.endedEarly = true;
  std::memcpy(to, source.bytes.data() + source.at, count);
  source.at += count;
  return static_cast<int>(count);
}

/// `count` may be negative: back.
void Skip(void* user, int count) {
  auto& source = *static_cast<Source*>(user);
  const auto left = static_cast<int64_t>(source.bytes.size() - source.at);
  const int64_t step = std::clamp<int64_t>(count, -static_cast<int64_t>(source.at), left);
  source.at = static_cast<size_t>(static_cast<int64_t>(source.at) + step);
}

int IsAtEnd(void* user) {
  const auto& source = *static_cast<const Source*>(user);
  return source.at == source.bytes.size();
}

constexpr stbi_io_callbacks kCallbacks = {Read, Skip, IsAtEnd};

[[noreturn]] void FailUnread(std::string_view bytes) {
  for (const char* start : {"BM", "GIF8"}) {
    if (bytes.starts_with(start)) FailDamaged(stbi_failure_reason());
  }
  throw std::runtime_error(
      "is not a picture that can be read (PNG, JPEG, BMP, GIF, PSD, TGA, TIFF, WebP, DDS)");
}

/// Makes four bytes of each pixel's one to four: grey, grey and alpha, or colours. Begins at the end, so that
/// no second copy is needed.
void SpreadToRgba(Image& image, size_t count, size_t channels) {
  if (channels == 4) return;
  const bool isGrey = channels < 3;
  image.rgba.Resize(count * 4);
  for (size_t i = count; i-- > 0;) {
    const uint8_t* const from = &image.rgba[i * channels];
    const uint8_t alpha = channels == 2 ? from[1] : 255;
    const uint8_t pixel[] = {from[0], from[isGrey ? 0 : 1], from[isGrey ? 0 : 2], alpha};
    std::memcpy(&image.rgba[i * 4], pixel, sizeof pixel);
  }
}

}  // namespace

Image DecodeWithStb(std::string_view bytes, PictureBudget& budget) {
  int width = 0, height = 0, channels = 0;
  Source header{bytes};
  if (!stbi_info_from_callbacks(&kCallbacks, &header, &width, &height, &channels)) FailUnread(bytes);
  CheckSize(width, height, budget.longestSide);
  Image image{width, height, {}};
  CheckHoldsData(bytes, image);
  budget.Take(width, height);
  Source source{bytes};
  constexpr int kAsStored = 0;
  stbi_uc* const pixels =
      stbi_load_from_callbacks(&kCallbacks, &source, &width, &height, &channels, kAsStored);
  if (!pixels) FailDamaged(stbi_failure_reason());
  const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
  image.rgba = ts3d::PixelBytes(pixels, count * static_cast<size_t>(channels));
  if (source.endedEarly) FailDamaged("the file ends too early");
  if (width != image.width || height != image.height) FailDamaged("its size is not clear");
  SpreadToRgba(image, count, static_cast<size_t>(channels));
  return image;
}

}  // namespace textures
