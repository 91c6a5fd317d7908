// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace preview {

/// Collects numbers as little-endian bytes.
class NumberBytes {
 public:
  template <class Number>
  void Add(Number number) {
    using Bits = std::conditional_t<sizeof(Number) == 2, uint16_t, uint32_t>;
    static_assert(sizeof(Number) == sizeof(Bits));
    const auto bits = std::bit_cast<Bits>(number);
    for (size_t i = 0; i < sizeof(Bits); ++i) bytes_ += static_cast<char>((bits >> (8 * i)) & 0xff);
  }
  const std::string& Bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

/// `bytes` in base64.
std::string ToBase64(std::string_view bytes);

}  // namespace preview
