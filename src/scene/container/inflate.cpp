// SPDX-License-Identifier: MIT
#include "scene/container/inflate.h"

#if defined(FBX_TO_TS3D_LIBDEFLATE)
#include <libdeflate.h>

#include <memory>
#else
#include <zlib.h>

#include <limits>
#endif

namespace scene {

#if defined(FBX_TO_TS3D_LIBDEFLATE)

bool Inflate(std::string_view packed, void* out, size_t size) {
  struct Free {
    void operator()(libdeflate_decompressor* d) const { libdeflate_free_decompressor(d); }
  };
  // It keeps its tables of fixed codes, which most of the small arrays are packed with.
  thread_local const std::unique_ptr<libdeflate_decompressor, Free> decompressor(
      libdeflate_alloc_decompressor());
  // Without a place for the size, anything but exactly `size` bytes is an error.
  return decompressor && libdeflate_zlib_decompress(decompressor.get(), packed.data(), packed.size(), out,
                                                    size, nullptr) == LIBDEFLATE_SUCCESS;
}

#else

bool Inflate(std::string_view packed, void* out, size_t size) {
  // zlib counts in 32 bits on some systems.
  constexpr size_t kMost = std::numeric_limits<uLong>::max();
  if (size > kMost || packed.size() > kMost) return false;
  auto written = static_cast<uLongf>(size);
  return uncompress(static_cast<Bytef*>(out), &written, reinterpret_cast<const Bytef*>(packed.data()),
                    static_cast<uLong>(packed.size())) == Z_OK &&
         written == size;
}

#endif

}  // namespace scene
