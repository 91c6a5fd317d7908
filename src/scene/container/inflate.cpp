// SPDX-License-Identifier: MIT
#include "scene/container/inflate.h"

#include <libdeflate.h>

#include <memory>

namespace scene {

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

}  // namespace scene
