// SPDX-License-Identifier: MIT
#include "terminal/text_width.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace cli {
namespace {

struct Range {
  uint32_t first, last;
};
constexpr Range kWide[] = {{0x1100, 0x115f}, {0x2e80, 0x303e},   {0x3041, 0xa4cf},   {0xa960, 0xa97f},
                           {0xac00, 0xd7a3}, {0xf900, 0xfaff},   {0xfe30, 0xfe6f},   {0xff00, 0xff60},
                           {0xffe0, 0xffe6}, {0x1f300, 0x1f64f}, {0x1f900, 0x1f9ff}, {0x20000, 0x3fffd}};
constexpr Range kWithout[] = {{0x0300, 0x036f}, {0x0483, 0x0489}, {0x0591, 0x05bd}, {0x064b, 0x065f},
                              {0x0e34, 0x0e3a}, {0x0e47, 0x0e4e}, {0x1ab0, 0x1aff}, {0x1dc0, 0x1dff},
                              {0x200b, 0x200f}, {0x20d0, 0x20ff}, {0xfe00, 0xfe0f}, {0xfe20, 0xfe2f}};

template <size_t N>
bool IsIn(uint32_t letter, const Range (&ranges)[N]) {
  return std::any_of(ranges, ranges + N,
                     [&](const Range& range) { return letter >= range.first && letter <= range.last; });
}

struct Letter {
  size_t bytes, columns;
};

/// The letter that `text`, which is not empty, begins with.
Letter FirstLetter(std::string_view text) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const size_t size = byte(0) >= 0xf0 ? 4 : byte(0) >= 0xe0 ? 3 : byte(0) >= 0xc0 ? 2 : 1;
  if (size == 1 || size > text.size()) return {1, 1};
  uint32_t letter = byte(0) & (0x7fu >> size);
  for (size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xc0) != 0x80) return {1, 1};
    letter = letter << 6 | (byte(i) & 0x3f);
  }
  return {size, IsIn(letter, kWithout) ? 0u : IsIn(letter, kWide) ? 2u : 1u};
}

}  // namespace

size_t DisplayWidth(std::string_view text) {
  size_t width = 0;
  while (!text.empty()) {
    const Letter letter = FirstLetter(text);
    width += letter.columns;
    text.remove_prefix(letter.bytes);
  }
  return width;
}

std::string Shortened(const std::string& text, size_t most) {
  constexpr std::string_view kDots = "...";
  const size_t width = DisplayWidth(text);
  if (width <= most) return text;
  const size_t kept = std::max<size_t>(most, 5) - kDots.size(), front = kept / 2, back = kept - front;
  std::string shortened;
  std::string_view rest = text;
  for (size_t column = 0; !rest.empty();) {
    const Letter letter = FirstLetter(rest);
    if (column + letter.columns <= front || column >= width - back) {
      shortened += rest.substr(0, letter.bytes);
    } else if (!shortened.ends_with(kDots)) {
      shortened += kDots;
    }
    column += letter.columns;
    rest.remove_prefix(letter.bytes);
  }
  return shortened;
}

std::string PadRight(std::string text, size_t width) {
  const size_t has = DisplayWidth(text);
  return has < width ? text.append(width - has, ' ') : text;
}

std::string PadLeft(const std::string& text, size_t width) {
  const size_t has = DisplayWidth(text);
  return has < width ? std::string(width - has, ' ') + text : text;
}

}  // namespace cli
