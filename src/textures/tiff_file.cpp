// SPDX-License-Identifier: MIT
#include "textures/tiff_file.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

#include "textures/picture_formats.h"

namespace textures {
namespace {

tmsize_t Read(thandle_t handle, void* to, tmsize_t size) {
  auto& source = *static_cast<TiffSource*>(handle);
  const uint64_t left = source.bytes.size() - std::min<uint64_t>(source.at, source.bytes.size());
  const auto count =
      static_cast<size_t>(std::min<uint64_t>(left, static_cast<uint64_t>(std::max<tmsize_t>(size, 0))));
  if (count > 0) std::memcpy(to, source.bytes.data() + source.at, count);
  source.at += count;
  return static_cast<tmsize_t>(count);
}

tmsize_t RefuseWrite(thandle_t, void*, tmsize_t) { return 0; }

toff_t Seek(thandle_t handle, toff_t offset, int whence) {
  auto& source = *static_cast<TiffSource*>(handle);
  const uint64_t base = whence == SEEK_CUR ? source.at : whence == SEEK_END ? source.bytes.size() : 0;
  return source.at = base + offset;
}

int Close(thandle_t) { return 0; }
toff_t Size(thandle_t handle) { return static_cast<TiffSource*>(handle)->bytes.size(); }

/// Keeps messages from standard error.
int KeepFirst(TIFF*, void* source, const char*, const char* format, va_list arguments) {
  char text[200];
  std::vsnprintf(text, sizeof text, format, arguments);
  auto& error = static_cast<TiffSource*>(source)->error;
  if (error.empty()) error = text;
  return 1;
}

int Ignore(TIFF*, void*, const char*, const char*, va_list) { return 1; }

struct FreeOptions {
  void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

}  // namespace

std::unique_ptr<TIFF, CloseTiff> OpenTiff(TiffSource& source, uint64_t mostMemory) {
  const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), KeepFirst, &source);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), Ignore, nullptr);
  constexpr uint64_t kTables = 1 << 20;
  // One of 32 bits has to stay above zero, which stands for all there is.
  const uint64_t most =
      std::min<uint64_t>(mostMemory + source.bytes.size() + kTables, std::numeric_limits<tmsize_t>::max());
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(most));
  source.at = 0;
  std::unique_ptr<TIFF, CloseTiff> tiff(TIFFClientOpenExt("", "rm", &source, Read, RefuseWrite, Seek, Close,
                                                          Size, nullptr, nullptr, options.get()));
  if (!tiff) FailDamaged(source.error);
  // The library's faster way takes a strip that holds more than its rows for a sound one, and gives zeros for it.
  uint16_t packing = COMPRESSION_NONE;
  TIFFGetField(tiff.get(), TIFFTAG_COMPRESSION, &packing);
  if (packing == COMPRESSION_DEFLATE || packing == COMPRESSION_ADOBE_DEFLATE)
    TIFFSetField(tiff.get(), TIFFTAG_DEFLATE_SUBCODEC, DEFLATE_SUBCODEC_ZLIB);
  return tiff;
}

}  // namespace textures
