// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <vector>

#include "textures/picture_formats.h"
#include "textures/tiff_file.h"

namespace textures {
namespace {

/// libtiff gives colours multiplied by alpha, which loses those of clear pixels. Where the file holds them
/// as they are, tells it that this is done already. @return whether the file's colours really are multiplied
bool KeepColours(TIFF* tiff) {
  uint16_t count = 0;
  const uint16_t* kinds = nullptr;
  if (!TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) || count == 0) return false;
  if (kinds[0] != EXTRASAMPLE_UNASSALPHA) return kinds[0] == EXTRASAMPLE_ASSOCALPHA;
  std::vector<uint16_t> changed(kinds, kinds + count);
  changed[0] = EXTRASAMPLE_ASSOCALPHA;
  TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, count, changed.data());
  return false;
}

void DivideByAlpha(Image& image) {
  for (size_t i = 0; i < image.rgba.size(); i += 4) {
    const int alpha = image.rgba[i + 3];
    if (alpha == 0) continue;
    for (size_t k = i; k < i + 3; ++k) {
      image.rgba[k] = static_cast<uint8_t>(std::min(255, (image.rgba[k] * 255 + alpha / 2) / alpha));
    }
  }
}

uint16_t Number(TIFF* tiff, uint32_t tag) {
  uint16_t number = 0;
  TIFFGetFieldDefaulted(tiff, tag, &number);
  return number;
}

/// Whether the rows hold grey or colours as they are, and perhaps more samples, all of 8 or 16 bits.
bool HasPlainRows(TIFF* tiff) {
  constexpr uint16_t kMostSamples = 8;
  const uint16_t kind = Number(tiff, TIFFTAG_PHOTOMETRIC), samples = Number(tiff, TIFFTAG_SAMPLESPERPIXEL),
                 bits = Number(tiff, TIFFTAG_BITSPERSAMPLE), format = Number(tiff, TIFFTAG_SAMPLEFORMAT);
  const bool isRgb = kind == PHOTOMETRIC_RGB && samples >= 3, isGrey = kind == PHOTOMETRIC_MINISBLACK;
  return (isRgb || isGrey) && samples <= kMostSamples && (bits == 8 || bits == 16) &&
         format == SAMPLEFORMAT_UINT && Number(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_CONTIG &&
         Number(tiff, TIFFTAG_ORIENTATION) == ORIENTATION_TOPLEFT && !TIFFIsTiled(tiff);
}

/// The number of the sample that is the alpha of plain rows; 0 for none.
size_t AlphaSample(TIFF* tiff) {
  uint16_t count = 0;
  const uint16_t* kinds = nullptr;
  const bool isNamed = TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) && count > 0 &&
                       kinds[0] != EXTRASAMPLE_UNSPECIFIED;
  const uint16_t samples = Number(tiff, TIFFTAG_SAMPLESPERPIXEL);
  // Programs leave the fourth sample unnamed; it is alpha all the same.
  if (Number(tiff, TIFFTAG_PHOTOMETRIC) == PHOTOMETRIC_RGB) return samples > 3 ? 3 : 0;
  return samples > 1 && isNamed ? 1 : 0;
}

/// Row by row: files often pack the whole picture as one strip, which libtiff would unpack beside it.
bool ReadPlainRows(TIFF* tiff, Image& image) {
  const size_t samples = Number(tiff, TIFFTAG_SAMPLESPERPIXEL), alpha = AlphaSample(tiff);
  const bool isDeep = Number(tiff, TIFFTAG_BITSPERSAMPLE) == 16;
  const size_t colour = Number(tiff, TIFFTAG_PHOTOMETRIC) == PHOTOMETRIC_RGB ? 1 : 0;
  const auto width = static_cast<size_t>(image.width), height = static_cast<size_t>(image.height);
  std::vector<uint16_t> row(width * samples);
  if (static_cast<size_t>(TIFFScanlineSize(tiff)) > row.size() * sizeof(uint16_t)) return false;
  const auto* bytes = reinterpret_cast<const uint8_t*>(row.data());
  const auto sample = [&](size_t at) {
    return isDeep ? static_cast<uint8_t>((row[at] + 128) / 257) : bytes[at];
  };
  for (size_t y = 0; y < height; ++y) {
    if (TIFFReadScanline(tiff, row.data(), static_cast<uint32_t>(y)) != 1) return false;
    uint8_t* to = &image.rgba[y * width * 4];
    for (size_t x = 0; x < width; ++x, to += 4) {
      for (size_t k = 0; k < 3; ++k) to[k] = sample(x * samples + k * colour);
      to[3] = alpha ? sample(x * samples + alpha) : 255;
    }
  }
  return true;
}

/// Every other kind, by libtiff itself, to where the pixels belong.
bool ReadAnyKind(TIFF* tiff, Image& image) {
  constexpr int kStopAtDamage = 1;
  const auto width = static_cast<uint32_t>(image.width), height = static_cast<uint32_t>(image.height);
  auto* const raster = reinterpret_cast<uint32_t*>(image.rgba.data());
  if (!TIFFReadRGBAImageOriented(tiff, width, height, raster, ORIENTATION_TOPLEFT, kStopAtDamage)) {
    return false;
  }
  for (size_t at = 0; at < image.rgba.size(); at += 4) {
    uint32_t pixel;
    std::memcpy(&pixel, &image.rgba[at], sizeof pixel);
    const uint32_t parts[] = {TIFFGetR(pixel), TIFFGetG(pixel), TIFFGetB(pixel), TIFFGetA(pixel)};
    for (size_t k = 0; k < 4; ++k) image.rgba[at + k] = static_cast<uint8_t>(parts[k]);
  }
  return true;
}

}  // namespace

Image DecodeTiff(std::string_view bytes, PictureBudget& budget) {
  TiffSource source{bytes, 0, {}};
  uint32_t width = 0, height = 0;
  {
    const auto tiff = OpenTiff(source, 0);
    TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height);
  }
  Image image = MakeImage(width, height, budget);
  // A strip or tile may be the whole picture, at most four samples of 16 bits a pixel.
  constexpr uint64_t kPixelSize = 8;
  const auto tiff = OpenTiff(source, kPixelSize * width * height);
  const bool isMultiplied = KeepColours(tiff.get());
  const bool isRead =
      HasPlainRows(tiff.get()) ? ReadPlainRows(tiff.get(), image) : ReadAnyKind(tiff.get(), image);
  if (!isRead) FailDamaged(source.error);
  if (isMultiplied) DivideByAlpha(image);
  return image;
}

}  // namespace textures
