// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

namespace actor {

/// Takes little-endian numbers from the front of bytes. Reading past the end gives zeros and is remembered.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : bytes_(bytes) {}

  bool Failed() const { return failed_; }
  size_t Left() const { return bytes_.size(); }
  /// Whether `count` records of at least `size` bytes can follow.
  bool HasRoomFor(int32_t count, size_t size) const {
    return count >= 0 && static_cast<size_t>(count) <= bytes_.size() / size;
  }

  std::string_view Bytes(size_t size) {
    if (size > bytes_.size()) {
      failed_ = true;
      bytes_ = {};
      return {};
    }
    const std::string_view part = bytes_.substr(0, size);
    bytes_.remove_prefix(size);
    return part;
  }
  int32_t Int32() {
    uint32_t word = 0;
    const std::string_view part = Bytes(4);
    for (size_t i = part.size(); i-- > 0;) word = word << 8 | static_cast<unsigned char>(part[i]);
    return static_cast<int32_t>(word);
  }
  float Float32() { return std::bit_cast<float>(Int32()); }
  template <size_t N>
  std::array<float, N> Floats() {
    std::array<float, N> values{};
    for (float& value : values) value = Float32();
    return values;
  }

 private:
  std::string_view bytes_;
  bool failed_ = false;
};

}  // namespace actor
