// SPDX-License-Identifier: MIT
#include "preview/base64.h"

namespace preview {

std::string ToBase64(std::string_view bytes) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t i = 0; i < bytes.size(); i += 3) {
    uint32_t group = 0;
    for (size_t k = 0; k < 3; ++k)
      group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0u);
    for (size_t k = 0; k < 4; ++k) text += i + k > bytes.size() ? '=' : kDigits[group >> (18 - 6 * k) & 63u];
  }
  return text;
}

}  // namespace preview
