// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace scene {

/// Unpacks one zlib stream that must give exactly `size` bytes; false when it does not. Safe for any input.
[[nodiscard]] bool Inflate(std::string_view packed, void* out, size_t size);

/// The most bytes that `packed` bytes of deflated data can unpack to; a larger claim is a bomb.
constexpr uint64_t LargestInflatedSize(uint64_t packed) { return packed * 1032 + 64; }

}  // namespace scene
