// SPDX-License-Identifier: MIT
#include "scene/container/number_text.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace scene {
namespace {

const char* SkipToken(const char* p, const char* end) {
  while (p != end && IsNumberCharacter(*p)) ++p;
  return p;
}

bool EndsToken(const char* p, const char* end) { return p == end || !IsNumberCharacter(*p); }

template <typename T>
const char* ParseInteger(const char* begin, const char* end, T& value) {
  const char* first = begin != end && *begin == '+' ? begin + 1 : begin;
  const auto [stop, error] = std::from_chars(first, end, value);
  if (error == std::errc() && EndsToken(stop, end)) return stop;
  double real = 0.0;
  const char* rest = ParseNumber(begin, end, real);
  const int64_t whole = ToInteger(real);
  value = whole > std::numeric_limits<T>::max()   ? std::numeric_limits<T>::max()
          : whole < std::numeric_limits<T>::min() ? std::numeric_limits<T>::min()
                                                  : static_cast<T>(whole);
  return rest;
}

}  // namespace

int64_t ToInteger(double value) {
  constexpr double kLimit = 9223372036854775808.0;
  if (std::isnan(value)) return 0;
  if (value >= kLimit) return std::numeric_limits<int64_t>::max();
  if (value < -kLimit) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(value);
}

const char* ParseNumber(const char* begin, const char* end, double& value) {
  const char* first = begin != end && *begin == '+' ? begin + 1 : begin;
  const auto [stop, error] = std::from_chars(first, end, value);
  if (error == std::errc() && EndsToken(stop, end)) {
    if (!std::isfinite(value)) value = 0.0;
    return stop;
  }
  value = 0.0;
  return SkipToken(begin, end);
}

const char* ParseNumber(const char* begin, const char* end, int32_t& value) {
  return ParseInteger(begin, end, value);
}

const char* ParseNumber(const char* begin, const char* end, int64_t& value) {
  return ParseInteger(begin, end, value);
}

}  // namespace scene
