// SPDX-License-Identifier: MIT
#include <squish.h>

#include <array>
#include <bit>
#include <stdexcept>

#include "base/byte_cursor.h"
#include "textures/picture_formats.h"

namespace textures {
namespace {

constexpr size_t kPlainHeaderSize = 128, kExtendedHeaderSize = 148;

/// The bits of a pixel that hold one colour.
struct Channel {
  uint32_t mask = 0;
  uint8_t missing = 0;  ///< value where there are no such bits

  uint8_t Of(uint32_t pixel) const {
    if (mask == 0) return missing;
    const int shift = std::countr_zero(mask);
    const uint64_t value = (pixel & mask) >> shift, most = mask >> shift;
    return static_cast<uint8_t>((value * 255 + most / 2) / most);
  }
};

/// How the pixels are stored: in blocks, or each for itself.
struct PixelFormat {
  int blockFlags = 0;  ///< of the block library; 0: each pixel for itself
  size_t pixelSize = 0;
  std::array<Channel, 4> channels;
  size_t dataAt = kPlainHeaderSize;
};

uint32_t Word(std::string_view bytes, size_t at) {
  return base::LoadNumber<uint32_t>(bytes.data() + at, false);
}

PixelFormat Plain(size_t bits, uint32_t red, uint32_t green, uint32_t blue, uint32_t alpha) {
  if (bits == 0 || bits > 32 || bits % 8 != 0) FailDamaged("pixels of " + std::to_string(bits) + " bits");
  return {0, bits / 8, {{{red}, {green}, {blue}, {alpha, 255}}}, kPlainHeaderSize};
}

PixelFormat ExtendedFormat(uint32_t number) {
  switch (number) {
    case 28:
    case 29:
      return Plain(32, 0xff, 0xff00, 0xff0000, 0xff000000);
    case 87:
    case 91:
      return Plain(32, 0xff0000, 0xff00, 0xff, 0xff000000);
    case 71:
    case 72:
      return {squish::kDxt1, 0, {}};
    case 74:
    case 75:
      return {squish::kDxt3, 0, {}};
    case 77:
    case 78:
      return {squish::kDxt5, 0, {}};
    default:
      throw std::runtime_error("is a DDS picture of a kind that is not read (number " +
                               std::to_string(number) + "); DXT1, DXT3, DXT5 and plain ones are");
  }
}

PixelFormat ReadFormat(std::string_view bytes) {
  constexpr uint32_t kHasAlpha = 1, kIsNamed = 4, kIsGrey = 0x20000;
  const uint32_t flags = Word(bytes, 80);
  if (!(flags & kIsNamed)) {
    const uint32_t red = Word(bytes, 92), alpha = flags & kHasAlpha ? Word(bytes, 104) : 0;
    if (flags & kIsGrey) return Plain(Word(bytes, 88), red, red, red, alpha);
    return Plain(Word(bytes, 88), red, Word(bytes, 96), Word(bytes, 100), alpha);
  }
  const std::string_view name = bytes.substr(84, 4);
  if (name == "DXT1") return {squish::kDxt1, 0, {}};
  if (name == "DXT3") return {squish::kDxt3, 0, {}};
  if (name == "DXT5") return {squish::kDxt5, 0, {}};
  if (name != "DX10" || bytes.size() < kExtendedHeaderSize) {
    throw std::runtime_error(
        "is a DDS picture of a kind that is not read; DXT1, DXT3, DXT5 and plain ones are");
  }
  PixelFormat format = ExtendedFormat(Word(bytes, kPlainHeaderSize));
  format.dataAt = kExtendedHeaderSize;
  return format;
}

void ReadPlain(std::string_view data, const PixelFormat& format, Image& image) {
  for (size_t i = 0; i < image.rgba.size() / 4; ++i) {
    uint32_t pixel = 0;
    for (size_t k = format.pixelSize; k-- > 0;) {
      pixel = pixel << 8 | static_cast<uint8_t>(data[i * format.pixelSize + k]);
    }
    for (size_t k = 0; k < 4; ++k) image.rgba[4 * i + k] = format.channels[k].Of(pixel);
  }
}

}  // namespace

Image DecodeDds(std::string_view bytes, PictureBudget& budget) {
  if (bytes.size() < kPlainHeaderSize) FailDamaged("the file ends too early");
  const PixelFormat format = ReadFormat(bytes);
  Image image = MakeImage(Word(bytes, 16), Word(bytes, 12), budget);
  const std::string_view data = bytes.substr(format.dataAt);
  const size_t size =
      format.blockFlags
          ? static_cast<size_t>(squish::GetStorageRequirements(image.width, image.height, format.blockFlags))
          : image.rgba.size() / 4 * format.pixelSize;
  if (data.size() < size) FailDamaged("the file ends too early");
  if (format.blockFlags) {
    squish::DecompressImage(image.rgba.data(), image.width, image.height, data.data(), format.blockFlags);
  } else {
    ReadPlain(data, format, image);
  }
  return image;
}

}  // namespace textures
