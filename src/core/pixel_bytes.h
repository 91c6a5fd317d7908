// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

namespace ts3d {

/// The bytes of a picture. Unlike a vector it takes over what decoding libraries allocate, and grows where it
/// is: big pictures are never in memory twice.
class PixelBytes {
 public:
  PixelBytes() = default;
  /// Zeros.
  explicit PixelBytes(size_t size) : bytes_(static_cast<uint8_t*>(std::calloc(size, 1))), size_(size) {
    if (!bytes_ && size > 0) throw std::bad_alloc();
  }
  /// @param allocated  by malloc; becomes this object's own
  PixelBytes(uint8_t* allocated, size_t size) : bytes_(allocated), size_(size) {}

  /// Bytes that are added have no particular value. @param size above 0
  void Resize(size_t size) {
    auto* const moved = static_cast<uint8_t*>(std::realloc(bytes_.get(), size));
    if (!moved) throw std::bad_alloc();
    static_cast<void>(bytes_.release());
    bytes_.reset(moved);
    size_ = size;
  }

  /// Hands the memory over, to be freed by free.
  uint8_t* Release() {
    size_ = 0;
    return bytes_.release();
  }

  size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  uint8_t* data() { return bytes_.get(); }
  const uint8_t* data() const { return bytes_.get(); }
  uint8_t& operator[](size_t at) { return bytes_[at]; }
  const uint8_t& operator[](size_t at) const { return bytes_[at]; }

 private:
  struct Free {
    void operator()(uint8_t* bytes) const { std::free(bytes); }
  };
  std::unique_ptr<uint8_t[], Free> bytes_;
  size_t size_ = 0;
};

}  // namespace ts3d
