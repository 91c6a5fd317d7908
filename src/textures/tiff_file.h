// SPDX-License-Identifier: MIT
#pragma once

#include <tiffio.h>

#include <memory>
#include <string>
#include <string_view>

namespace textures {

/// The bytes of the file as libtiff reads them, and what it said about them first.
struct TiffSource {
  std::string_view bytes;
  uint64_t at = 0;
  std::string error;
};

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
/// @param source  outlives what is returned
/// @param mostMemory  that libtiff may take at a time, beside what the file's own tables take
/// @throws std::runtime_error when there is no picture
std::unique_ptr<TIFF, CloseTiff> OpenTiff(TiffSource& source, uint64_t mostMemory);

}  // namespace textures
