// SPDX-License-Identifier: MIT
#include "scene/gltf/coordinate_table.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace scene::gltf {
namespace {

constexpr uint32_t kSeveral = 0x80000000;

/// Both zeros are one number.
float ToFinite(double number) {
  const auto rounded = static_cast<float>(number);
  return std::isfinite(rounded) ? rounded + 0.0f : 0.0f;
}

}  // namespace

std::array<float, 2> CoordinateList::At(size_t place) const {
  const CoordinateTransform& t = transform_;
  const auto u = static_cast<double>(elements_.At(place, 0)), v = static_cast<double>(elements_.At(place, 1));
  // Pictures begin at the top there, and at the bottom here.
  return {ToFinite(t[0] * u + t[1] * v + t[2]), ToFinite(1.0 - (t[3] * u + t[4] * v + t[5]))};
}

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
  FloatElements elements = accessors_.Floats(accessor, 2);
  const size_t count = std::min(elements.size(), points->size());
  const uint64_t first = lists_.empty() ? 0 : lists_.back().First() + uint64_t{lists_.back().size()};
  if (first + count > std::numeric_limits<int32_t>::max() / 2)
    throw Fault("a mesh has too many texture coordinates");
  budget_.Take(count * (CoordinateList::kPairMemory + 2 * sizeof(Further)));
  const size_t knownFurther = further_.size();
  lists_.emplace_back(static_cast<uint32_t>(first), std::move(elements), count, transform);
  numbers = std::make_shared<const FbxArray<int32_t>>(
      Number(static_cast<uint32_t>(first), points->View().first(count)));
  budget_.ReturnTo(before);
  budget_.Take(lists_.back().Memory() + 2 * sizeof(Further) * (further_.size() - knownFurther));
  return numbers;
}

/// @param points  of the vertices of the last list
FbxArray<int32_t> CoordinateTable::Number(uint32_t first, std::span<const int32_t> points) {
  FbxArray<int32_t> numbers;
  int32_t* const to = numbers.Allocate(points.size());
  for (size_t i = 0; i < points.size(); ++i) {
    uint32_t& last = last_[static_cast<size_t>(points[i])];
    const uint32_t pair = first + static_cast<uint32_t>(i);
    to[i] = static_cast<int32_t>(last == kNone ? last = pair : NumberBeside(last, pair));
  }
  return numbers;
}

/// @param last  of the pairs of the control point
/// @return the number of the pair among them that is equal, or its own
uint32_t CoordinateTable::NumberBeside(uint32_t& last, uint32_t pair) {
  // Few points have several, but a file may have them all at one; then some come twice.
  constexpr int kMostCompared = 64;
  const std::array<float, 2> values = ValuesOf(pair);
  uint32_t next = last;
  for (int i = 0; i < kMostCompared && next != kNone; ++i) {
    const Further other = next < kSeveral ? Further{next, kNone} : further_[next - kSeveral];
    if (ValuesOf(other.pair) == values) return other.pair;
    next = other.before;
  }
  further_.push_back({pair, last});
  last = kSeveral + static_cast<uint32_t>(further_.size() - 1);
  return pair;
}

std::array<float, 2> CoordinateTable::ValuesOf(uint32_t pair) const {
  const auto isBefore = [](uint32_t number, const CoordinateList& list) { return number < list.First(); };
  const CoordinateList& list = *(std::upper_bound(lists_.begin(), lists_.end(), pair, isBefore) - 1);
  return list.At(pair - list.First());
}

}  // namespace scene::gltf
