// SPDX-License-Identifier: MIT
#include "scene/gltf/coordinate_table.h"

#include <algorithm>
#include <bit>

#include "base/mixed_hash.h"

namespace scene::gltf {
namespace {

/// Both zeros are one number.
uint32_t ToWord(double number) { return std::bit_cast<uint32_t>(static_cast<float>(number) + 0.0f); }

}  // namespace

CoordinateTable::CoordinateTable(const AccessorReader& accessors, Budget& budget, size_t pointCount)
    : accessors_(accessors), budget_(budget) {
  budget_.Take(pointCount * sizeof(uint32_t));
  last_.assign(pointCount, kNone);
}

VertexNumbers CoordinateTable::PairsOf(uint32_t accessor, const CoordinateTransform& transform,
                                       const VertexNumbers& points) {
  VertexNumbers& numbers = known_[{accessor, transform, points}];
  if (numbers) return numbers;
  const uint64_t before = budget_.Used();
  const FloatElements elements = accessors_.Floats(accessor, 2);
  const size_t count = std::min(elements.size(), points->size());
  constexpr uint64_t kPair = sizeof(uint64_t) + sizeof(uint32_t);
  budget_.Take(uint64_t{count} * (sizeof(int32_t) + kPair));
  const uint64_t knownPairs = pairs_.size();
  numbers = std::make_shared<const FbxArray<int32_t>>(Read(elements, transform, points->View().first(count)));
  budget_.ReturnTo(before);
  budget_.Take(uint64_t{count} * sizeof(int32_t) + 2 * kPair * (pairs_.size() - knownPairs));
  return numbers;
}

FbxArray<int32_t> CoordinateTable::Read(const FloatElements& elements, const CoordinateTransform& t,
                                        std::span<const int32_t> points) {
  const size_t needed = pairs_.size() + points.size();
  if (pairs_.capacity() < needed) {
    pairs_.reserve(std::max(needed, 2 * pairs_.size()));
    earlier_.reserve(pairs_.capacity());
  }
  FbxArray<int32_t> numbers;
  int32_t* const to = numbers.Allocate(points.size());
  for (size_t i = 0; i < points.size(); ++i) {
    const auto u = static_cast<double>(elements.At(i, 0)), v = static_cast<double>(elements.At(i, 1));
    // Pictures begin at the top there, and at the bottom here.
    const uint64_t pair =
        base::PairKey(ToWord(t[0] * u + t[1] * v + t[2]), ToWord(1.0 - (t[3] * u + t[4] * v + t[5])));
    to[i] = static_cast<int32_t>(NumberOf(pair, last_[static_cast<size_t>(points[i])]));
  }
  return numbers;
}

/// @param last  of the pairs of the control point
uint32_t CoordinateTable::NumberOf(uint64_t pair, uint32_t& last) {
  // Few points have several, but a file may have them all at one; then some come twice.
  constexpr int kMostCompared = 64;
  uint32_t number = last;
  for (int i = 0; i < kMostCompared && number != kNone; ++i) {
    if (pairs_[number] == pair) return number;
    number = earlier_[number];
  }
  pairs_.push_back(pair);
  earlier_.push_back(last);
  return last = static_cast<uint32_t>(pairs_.size() - 1);
}

}  // namespace scene::gltf
