// SPDX-License-Identifier: MIT
#include "scene/gltf/coordinate_table.h"

#include <algorithm>
#include <bit>

namespace scene::gltf {
namespace {

/// Both zeros are one number.
uint32_t ToWord(double number) { return std::bit_cast<uint32_t>(static_cast<float>(number) + 0.0f); }

}  // namespace

VertexNumbers CoordinateTable::PairsOf(uint32_t accessor, const CoordinateTransform& transform) {
  VertexNumbers& numbers = known_[{accessor, transform}];
  if (numbers) return numbers;
  const uint64_t before = budget_.Used();
  const FloatElements elements = accessors_.Floats(accessor, 2);
  const uint64_t count = elements.size();
  budget_.Take(count * (sizeof(int32_t) + 2 * sizeof(uint64_t)) + NumberTable::MostMemory(count));
  const uint32_t knownPairs = table_.size();
  numbers = std::make_shared<const FbxArray<int32_t>>(Read(elements, transform));
  budget_.ReturnTo(before);
  const uint64_t added = table_.size() - knownPairs;
  budget_.Take(count * sizeof(int32_t) + added * 2 * sizeof(uint64_t) + NumberTable::MostMemory(added));
  return numbers;
}

FbxArray<int32_t> CoordinateTable::Read(const FloatElements& elements, const CoordinateTransform& t) {
  const size_t count = elements.size();
  table_.Expect(count, [&](uint32_t pair) { return pairs_[pair]; });
  const size_t needed = pairs_.size() + count;
  if (pairs_.capacity() < needed) pairs_.reserve(std::max(needed, 2 * pairs_.size()));
  const auto pairAt = [&](size_t i) {
    const auto u = static_cast<double>(elements.At(i, 0)), v = static_cast<double>(elements.At(i, 1));
    // Pictures begin at the top there, and at the bottom here.
    return base::PairKey(ToWord(t[0] * u + t[1] * v + t[2]), ToWord(1.0 - (t[3] * u + t[4] * v + t[5])));
  };
  FbxArray<int32_t> numbers;
  int32_t* const to = numbers.Allocate(count);
  table_.ForEachAhead(count, pairAt, [&](size_t i, uint64_t pair, uint64_t hash) {
    const uint32_t number = table_.NumberOf(hash, [&](uint32_t other) { return pairs_[other] == pair; });
    if (number == pairs_.size()) pairs_.push_back(pair);
    to[i] = static_cast<int32_t>(number);
  });
  return numbers;
}

}  // namespace scene::gltf
