// SPDX-License-Identifier: MIT
#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "textures/picture_formats.h"

namespace cli {
namespace {

/// The bytes of the file as libtiff reads them, and what it said about them first.
struct Source {
  std::string_view bytes;
  uint64_t at = 0;
  std::string error;
};

tmsize_t Read(thandle_t handle, void* to, tmsize_t size) {
  auto& source = *static_cast<Source*>(handle);
  const uint64_t left = source.bytes.size() - std::min<uint64_t>(source.at, source.bytes.size());
  const uint64_t count = std::min<uint64_t>(left, static_cast<uint64_t>(std::max<tmsize_t>(size, 0)));
  if (count > 0) std::memcpy(to, source.bytes.data() + source.at, count);
  source.at += count;
  return static_cast<tmsize_t>(count);
}

tmsize_t RefuseWrite(thandle_t, void*, tmsize_t) { return 0; }

toff_t Seek(thandle_t handle, toff_t offset, int whence) {
  auto& source = *static_cast<Source*>(handle);
  const uint64_t base = whence == SEEK_CUR ? source.at : whence == SEEK_END ? source.bytes.size() : 0;
  return source.at = base + offset;
}

int Close(thandle_t) { return 0; }
toff_t Size(thandle_t handle) { return static_cast<Source*>(handle)->bytes.size(); }

/// Keeps messages from standard error.
int KeepFirst(TIFF*, void* source, const char*, const char* format, va_list arguments) {
  char text[200];
  std::vsnprintf(text, sizeof text, format, arguments);
  auto& error = static_cast<Source*>(source)->error;
  if (error.empty()) error = text;
  return 1;
}

int Ignore(TIFF*, void*, const char*, const char*, va_list) { return 1; }

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
struct FreeOptions {
  void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

std::unique_ptr<TIFF, CloseTiff> Open(Source& source, int longestSide) {
  const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), KeepFirst, &source);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), Ignore, nullptr);
  // A strip may be the whole picture, at most four samples of 16 bits a pixel; tables are never as large.
  constexpr tmsize_t kPixelSize = 8, kTables = 1 << 20;
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), kPixelSize * longestSide * longestSide + kTables);
  return std::unique_ptr<TIFF, CloseTiff>(TIFFClientOpenExt("", "rm", &source, Read, RefuseWrite, Seek, Close,
                                                            Size, nullptr, nullptr, options.get()));
}

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

}  // namespace

Image DecodeTiff(std::string_view bytes, int longestSide) {
  Source source{bytes, 0, {}};
  const auto tiff = Open(source, longestSide);
  if (!tiff) FailDamaged(source.error);
  uint32_t width = 0, height = 0;
  TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width);
  TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height);
  Image image = MakeImage(width, height, longestSide);
  const bool isMultiplied = KeepColours(tiff.get());
  std::vector<uint32_t> raster(image.rgba.size() / 4);
  constexpr int kStopAtDamage = 1;
  if (!TIFFReadRGBAImageOriented(tiff.get(), width, height, raster.data(), ORIENTATION_TOPLEFT,
                                 kStopAtDamage)) {
    FailDamaged(source.error);
  }
  for (size_t i = 0; i < raster.size(); ++i) {
    const uint32_t pixel = raster[i];
    const uint32_t parts[] = {TIFFGetR(pixel), TIFFGetG(pixel), TIFFGetB(pixel), TIFFGetA(pixel)};
    for (size_t k = 0; k < 4; ++k) image.rgba[4 * i + k] = static_cast<uint8_t>(parts[k]);
  }
  if (isMultiplied) DivideByAlpha(image);
  return image;
}

}  // namespace cli
