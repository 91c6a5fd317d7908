// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace base {

/// Hash of a number whose bits all count. The standard's hash of a number is the number itself, so that a
/// file could choose its identifiers to fall into one bucket; it cannot know where this program was loaded.
struct MixedHash {
  size_t operator()(int64_t value) const { return (*this)(static_cast<uint64_t>(value)); }
  size_t operator()(uint64_t value) const {
    value += 0x9e3779b97f4a7c15 ^ kSalt;
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9;
    value = (value ^ (value >> 27)) * 0x94d049bb133111eb;
    return static_cast<size_t>(value ^ (value >> 31));
  }

 private:
  static inline const char kPlace = 0;
  static inline const uint64_t kSalt = reinterpret_cast<uintptr_t>(&kPlace);
};

/// Two numbers as one key.
constexpr uint64_t PairKey(uint32_t a, uint32_t b) { return static_cast<uint64_t>(a) << 32 | b; }

}  // namespace base
