// SPDX-License-Identifier: MIT
#include <algorithm>
#include <stdexcept>
#include <vector>

#include "base/byte_cursor.h"
#include "textures/picture_formats.h"

namespace textures {
namespace {

constexpr int kGrey = 1, kRgb = 3;

/// Walks through the bytes of the file. Numbers have their high byte first.
class Cursor {
 public:
  explicit Cursor(std::string_view bytes) : in_(bytes, true) {}

  std::string_view Take(uint64_t size) { return Whole(in_.Bytes(size)); }
  template <typename T>
  T Number() {
    return Whole(in_.Number<T>());
  }

 private:
  template <typename T>
  T Whole(T read) const {
    if (in_.Failed()) FailDamaged("the file ends too early");
    return read;
  }

  base::ByteCursor in_;
};

struct Header {
  uint32_t channels, height, width, depth, mode;
};

Header ReadHeader(Cursor& cursor) {
  constexpr uint64_t kBeforeChannels = 12;
  cursor.Take(kBeforeChannels);
  Header header{};
  header.channels = cursor.Number<uint16_t>();
  header.height = cursor.Number<uint32_t>();
  header.width = cursor.Number<uint32_t>();
  header.depth = cursor.Number<uint16_t>();
  header.mode = cursor.Number<uint16_t>();
  if ((header.mode != kGrey && header.mode != kRgb) || (header.depth != 8 && header.depth != 16)) {
    throw std::runtime_error(
        "is a PSD picture of a kind that is not read; RGB and grey of 8 and 16 bits are");
  }
  if (header.channels < header.mode) FailDamaged("colours are missing");
  return header;
}

/// Whether the first channel behind the colours is the transparency of all layers together: the layer count
/// is negative then, and the colours are mixed with white. Else it is one that the artist has saved.
bool SkipLayers(Cursor& cursor) {
  Cursor section(cursor.Take(cursor.Number<uint32_t>()));
  try {
    Cursor layers(section.Take(section.Number<uint32_t>()));
    return layers.Number<uint16_t>() >= 0x8000;
  } catch (const std::runtime_error&) {
    return false;  // no layers
  }
}

/// Appends `size` bytes that are packed as runs.
void Unpack(Cursor& cursor, size_t size, std::vector<uint8_t>& row) {
  while (row.size() < size) {
    const auto code = cursor.Number<int8_t>();
    if (code >= 0) {
      for (const char byte : cursor.Take(static_cast<uint64_t>(code) + 1))
        row.push_back(static_cast<uint8_t>(byte));
    } else if (code != -128) {
      row.insert(row.end(), static_cast<size_t>(1 - code), cursor.Number<uint8_t>());
    }
  }
  if (row.size() > size) FailDamaged("a row is too long");
}

void ReadChannel(Cursor& cursor, const Header& header, bool isPacked, size_t channel, Image& image) {
  const size_t sampleSize = header.depth / 8, rowSize = header.width * sampleSize;
  std::vector<uint8_t> row;
  for (size_t y = 0; y < header.height; ++y) {
    row.clear();
    if (isPacked) {
      Unpack(cursor, rowSize, row);
    } else {
      for (const char byte : cursor.Take(rowSize)) row.push_back(static_cast<uint8_t>(byte));
    }
    for (size_t x = 0; x < header.width; ++x) {
      image.rgba[(y * header.width + x) * 4 + channel] = row[x * sampleSize];
    }
  }
}

void RemoveWhite(Image& image) {
  for (size_t i = 0; i < image.rgba.size(); i += 4) {
    const int alpha = image.rgba[i + 3];
    if (alpha == 0) continue;
    for (size_t k = i; k < i + 3; ++k) {
      image.rgba[k] = static_cast<uint8_t>(std::clamp(255 - (255 - image.rgba[k]) * 255 / alpha, 0, 255));
    }
  }
}

}  // namespace

Image DecodePsd(std::string_view bytes, PictureBudget& budget) {
  Cursor cursor(bytes);
  const Header header = ReadHeader(cursor);
  Image image = MakeImage(header.width, header.height, budget);
  cursor.Take(cursor.Number<uint32_t>());  // palette
  cursor.Take(cursor.Number<uint32_t>());  // resources
  const bool isMixedWithWhite = SkipLayers(cursor);
  const uint32_t packing = cursor.Number<uint16_t>();
  if (packing > 1) throw std::runtime_error("is a PSD picture that is packed in a way that is not read");
  if (packing == 1) cursor.Take(uint64_t{2} * header.height * header.channels);  // sizes of the rows
  const size_t colours = header.mode == kGrey ? 1 : 3;
  const bool hasAlpha = header.channels > colours;
  for (size_t i = 0; i < colours; ++i) ReadChannel(cursor, header, packing == 1, i, image);
  if (hasAlpha) ReadChannel(cursor, header, packing == 1, 3, image);
  for (size_t i = 0; i < image.rgba.size(); i += 4) {
    if (header.mode == kGrey) image.rgba[i + 1] = image.rgba[i + 2] = image.rgba[i];
    if (!hasAlpha) image.rgba[i + 3] = 255;
  }
  if (hasAlpha && isMixedWithWhite) RemoveWhite(image);
  return image;
}

}  // namespace textures
