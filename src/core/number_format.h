// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <string>

namespace ts3d {

/// `value` with six decimals and a point, in any locale.
inline std::string SixDecimals(double value) {
  char text[400];  // the largest double has 309 digits before the point
  const auto result = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 6);
  return {text, result.ptr};
}

}  // namespace ts3d
