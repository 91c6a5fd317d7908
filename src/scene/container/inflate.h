// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace scene {

/// Unpacks one zlib stream that must give exactly `size` bytes; false when it does not. Safe for any input.
[[nodiscard]] bool Inflate(std::string_view packed, void* out, size_t size);

/// The most bytes that `packed` bytes of deflated data can unpack to; a larger claim is a bomb.
constexpr size_t LargestInflatedSize(size_t packed) { return packed * 1032 + 64; }

}  // namespace scene
