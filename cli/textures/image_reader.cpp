// SPDX-License-Identifier: MIT
#include "textures/image_reader.h"

#include <algorithm>
#include <stdexcept>

#include "platform/files.h"
#include "textures/picture_formats.h"

namespace cli {
namespace {

using Decoder = Image (*)(std::string_view bytes, int longestSide);

/// What files of a kind hold at their start, or 8 bytes further in.
struct Signature {
  size_t at;
  std::string_view text;
  Decoder decode;
};

constexpr Signature kSignatures[] = {{0, "\x89PNG", DecodePng},     {0, "\xff\xd8\xff", DecodeJpeg},
                                     {0, {"II*\0", 4}, DecodeTiff}, {0, {"MM\0*", 4}, DecodeTiff},
                                     {8, "WEBP", DecodeWebp},       {0, "DDS ", DecodeDds},
                                     {0, "8BPS", DecodePsd}};

}  // namespace

void CheckSize(int64_t width, int64_t height, int longestSide) {
  if (width <= 0 || height <= 0) FailDamaged("it has no pixels");
  if (std::max(width, height) <= std::min(longestSide, kLargestSide)) return;
  throw std::runtime_error("is too large: " + std::to_string(width) + " x " + std::to_string(height) +
                           " pixels, the limit is " + std::to_string(longestSide) + " a side");
}

Image MakeImage(int64_t width, int64_t height, int longestSide) {
  CheckSize(width, height, longestSide);
  Image image{static_cast<int>(width), static_cast<int>(height), {}};
  image.rgba.resize(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
  return image;
}

void FailDamaged(const std::string& detail) { throw std::runtime_error("is damaged (" + detail + ")"); }

Image DecodeImage(std::string_view bytes, int longestSide) {
  if (bytes.empty()) throw std::runtime_error("is empty");
  for (const Signature& signature : kSignatures) {
    if (bytes.size() > signature.at && bytes.substr(signature.at).starts_with(signature.text)) {
      return signature.decode(bytes, longestSide);
    }
  }
  return DecodeWithStb(bytes, longestSide);
}

Image ReadImage(const std::filesystem::path& path, int longestSide) {
  platform::MappedFile file;
  std::string error;
  if (!file.Open(path.string(), error)) throw std::runtime_error("cannot be read: " + error);
  return DecodeImage(file.Bytes(), longestSide);
}

}  // namespace cli
