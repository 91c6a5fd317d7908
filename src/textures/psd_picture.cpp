// SPDX-License-Identifier: MIT
#include <algorithm>
#include <stdexcept>
#include <vector>

#include "textures/picture_formats.h"

namespace textures {
namespace {

constexpr int kGrey = 1, kRgb = 3;

/// Walks through the bytes of the file. Numbers have their high byte first.
class Cursor {
 public:
  explicit Cursor(std::string_view bytes) : left_(bytes) {}

  std::string_view Take(uint64_t size) {
    if (size > left_.size()) FailDamaged("the file ends too early");
    const std::string_view taken = left_.substr(0, static_cast<size_t>(size));
    left_.remove_prefix(taken.size());
    return taken;
  }
  uint32_t Number(size_t size) {
    uint32_t number = 0;
    for (const char byte : Take(size)) number = number << 8 | static_cast<uint8_t>(byte);
    return number;
  }

 private:
  std::string_view left_;
};

struct Header {
  uint32_t channels, height, width, depth, mode;
};

Header ReadHeader(Cursor& cursor) {
  constexpr uint64_t kBeforeChannels = 12;
  cursor.Take(kBeforeChannels);
  Header header{};
  header.channels = cursor.Number(2);
  header.height = cursor.Number(4);
  header.width = cursor.Number(4);
  header.depth = cursor.Number(2);
  header.mode = cursor.Number(2);
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
  Cursor section(cursor.Take(cursor.Number(4)));
  try {
    Cursor layers(section.Take(section.Number(4)));
    return layers.Number(2) >= 0x8000;
  } catch (const std::runtime_error&) {
    return false;  // no layers
  }
}

/// Appends `size` bytes that are packed as runs.
void Unpack(Cursor& cursor, size_t size, std::vector<uint8_t>& row) {
  while (row.size() < size) {
    const auto code = static_cast<int8_t>(cursor.Number(1));
    if (code >= 0) {
      for (const char byte : cursor.Take(static_cast<uint64_t>(code) + 1))
        row.push_back(static_cast<uint8_t>(byte));
    } else if (code != -128) {
      row.insert(row.end(), static_cast<size_t>(1 - code), static_cast<uint8_t>(cursor.Number(1)));
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
  cursor.Take(cursor.Number(4));  // palette
  cursor.Take(cursor.Number(4));  // resources
  const bool isMixedWithWhite = SkipLayers(cursor);
  const uint32_t packing = cursor.Number(2);
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
