// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

namespace scene {

/// `value` as an integer: truncated, clamped to the range of the type, 0 for not-a-number.
int64_t ToInteger(double value);

/// Reads one number from the text between `begin` and `end`, in any locale. Returns where the number's token
/// ends; what is no finite number (1.#IND, nan, inf, too large) reads as 0.
const char* ParseNumber(const char* begin, const char* end, double& value);

/// The same for numbers that are meant as integers; a fraction is cut off.
const char* ParseNumber(const char* begin, const char* end, int32_t& value);
const char* ParseNumber(const char* begin, const char* end, int64_t& value);

inline constexpr std::array<bool, 256> kNumberCharacters = [] {
  std::array<bool, 256> is{};
  for (const char* c = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ.-+#()_"; *c; ++c) {
    is[static_cast<unsigned char>(*c)] = true;
  }
  return is;
}();

/// Whether `c` can stand in a number token, the odd spellings of not-a-number included.
inline bool IsNumberCharacter(char c) { return kNumberCharacters[static_cast<unsigned char>(c)]; }

}  // namespace scene
