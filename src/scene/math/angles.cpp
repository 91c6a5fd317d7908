// SPDX-License-Identifier: MIT
#include "scene/math/angles.h"

#include <array>
#include <cmath>
#include <numbers>

namespace scene {
namespace {

/// The unrounded sum of two doubles, of which `low` is at most half a last place of `high`.
struct Wide {
  double high = 0.0, low = 0.0;
};

/// a + b for |a| >= |b|.
constexpr Wide OrderedSum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

constexpr Wide Sum(double a, double b) {
  const double sum = a + b;
  const double takenFromB = sum - a;
  return {sum, (a - (sum - takenFromB)) + (b - takenFromB)};
}

constexpr Wide operator+(const Wide& a, const Wide& b) {
  const Wide high = Sum(a.high, b.high), low = Sum(a.low, b.low);
  const Wide partial = OrderedSum(high.high, high.low + low.high);
  return OrderedSum(partial.high, partial.low + low.low);
}

constexpr Wide operator-(const Wide& a) { return {-a.high, -a.low}; }

/// Halves of 26 bits, whose products are exact.
constexpr Wide Split(double a) {
  constexpr double kSplitter = 134217729.0;  // 2^27 + 1
  const double scaled = kSplitter * a;
  const double high = scaled - (scaled - a);
  return {high, a - high};
}

constexpr Wide Product(double a, double b) {
  const double product = a * b;
  const Wide x = Split(a), y = Split(b);
  return {product, ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low};
}

constexpr Wide operator*(const Wide& a, const Wide& b) {
  const Wide product = Product(a.high, b.high);
  return OrderedSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

constexpr Wide operator/(const Wide& a, double b) {
  const double quotient = a.high / b;
  const Wide rest = a + -Product(quotient, b);
  return OrderedSum(quotient, rest.high / b);
}

/// (-1)^k n! / (n + 2k)! for k = 0, 1, ...: what x^(2k) counts in the sine of x over x (n = 1), and in the
/// cosine (n = 0).
constexpr size_t kTerms = 15;
constexpr std::array<Wide, kTerms> Coefficients(size_t n) {
  std::array<Wide, kTerms> coefficients{Wide{1.0, 0.0}};
  for (size_t k = 1; k < kTerms; ++k) {
    const size_t factor = n + 2 * k - 1;
    coefficients[k] = -(coefficients[k - 1] / static_cast<double>(factor * (factor + 1)));
  }
  return coefficients;
}

constexpr std::array<Wide, kTerms> kSine = Coefficients(1), kCosine = Coefficients(0);

/// The power series of x^2 for |x| <= pi / 4.
Wide Series(const Wide& square, const std::array<Wide, kTerms>& coefficients) {
  // What the higher terms lack in precision is gone when the lower ones have shrunk it.
  constexpr size_t kWideTerms = 8;
  double tail = 0.0;
  for (size_t k = kTerms; k-- > kWideTerms;) tail = coefficients[k].high + square.high * tail;
  Wide sum{tail, 0.0};
  for (size_t k = kWideTerms; k-- > 0;) sum = coefficients[k] + square * sum;
  return sum;
}

struct WideSineAndCosine {
  Wide sine, cosine;
};

WideSineAndCosine WideSinCos(double angle) {
  // A quarter turn in three parts.
  constexpr double kQuarter = 1.5707963267948966, kQuarter2 = 6.123233995736766e-17,
                   kQuarter3 = -1.4973849048591833e-33;
  constexpr double kMostReduced = 1e8;
  if (std::abs(angle) > kMostReduced) angle = std::fmod(angle, 2.0 * std::numbers::pi);
  const double quarters = std::floor(angle / kQuarter + 0.5);
  const Wide rest = (Wide{angle, 0.0} + -Product(quarters, kQuarter)) + -Product(quarters, kQuarter2) +
                    Wide{-quarters * kQuarter3, 0.0};
  const Wide square = rest * rest;
  const Wide sine = rest * Series(square, kSine), cosine = Series(square, kCosine);
  switch (static_cast<int>(std::fmod(quarters, 4.0)) & 3) {
    case 0:
      return {sine, cosine};
    case 1:
      return {cosine, -sine};
    case 2:
      return {-sine, -cosine};
    default:
      return {-cosine, sine};
  }
}

}  // namespace

SineAndCosine SinCos(double radians) {
  if (radians == 0.0) return {radians, 1.0};
  if (!std::isfinite(radians)) return {radians - radians, radians - radians};
  const WideSineAndCosine wide = WideSinCos(radians);
  return {wide.sine.high, wide.cosine.high};
}

double ArcTangent(double y, double x) {
  const double guess = std::atan2(y, x);
  if (x == 0.0 || y == 0.0 || !std::isfinite(guess)) return guess;
  // One step towards the angle whose direction (x, y) is leaves no trace of the guess.
  const auto [sine, cosine] = WideSinCos(guess);
  const Wide across = Wide{y, 0.0} * cosine + -(Wide{x, 0.0} * sine);
  const double step = across.high / (x * cosine.high + y * sine.high);
  return std::isfinite(step) ? guess + step : guess;
}

}  // namespace scene
