// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace prove {

/// The SHA-256 of a file (FIPS 180-4), which comes in pieces. No library that all systems share has it.
class Sha256 {
 public:
  void Add(std::string_view bytes);
  /// 64 lower-case hexadecimal digits, as `sha256sum` prints; nothing may be added afterwards.
  std::string Finish();

 private:
  void TakeBlock(const char* block);

  std::array<uint32_t, 8> state_{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  uint64_t count_ = 0;   ///< bytes
  std::string pending_;  ///< less than a block
};

}  // namespace prove
