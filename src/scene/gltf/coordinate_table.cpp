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
  budget_.Take(count * (sizeof(int32_t) + 4 * sizeof(float)) + NumberTable::MostMemory(count));
  const uint32_t knownPairs = table_.size();
  numbers = std::make_shared<const FbxArray<int32_t>>(Read(elements, transform));
  budget_.ReturnTo(before);
  const uint64_t added = table_.size() - knownPairs;
  budget_.Take(count * sizeof(int32_t) + added * 4 * sizeof(float) + NumberTable::MostMemory(added));
  return numbers;
}

FbxArray<int32_t> CoordinateTable::Read(const FloatElements& elements, const CoordinateTransform& t) {
  const size_t count = elements.size();
  table_.Expect(count, [&](uint32_t pair) { return WordsOf(pair); });
  const size_t needed = pairs_.size() + 2 * count;
  if (pairs_.capacity() < needed) pairs_.reserve(std::max(needed, 2 * pairs_.size()));
  const auto wordsAt = [&](size_t i) {
    const auto u = static_cast<double>(elements.At(i, 0)), v = static_cast<double>(elements.At(i, 1));
    // Pictures begin at the top there, and at the bottom here.
    return base::PairKey(ToWord(t[0] * u + t[1] * v + t[2]), ToWord(1.0 - (t[3] * u + t[4] * v + t[5])));
  };
  FbxArray<int32_t> numbers;
  int32_t* const to = numbers.Allocate(count);
  table_.ForEachAhead(count, wordsAt, [&](size_t i, uint64_t words) {
    const uint32_t number = table_.NumberOf(words, [&](uint32_t other) { return WordsOf(other) == words; });
    to[i] = static_cast<int32_t>(number);
    if (2 * size_t{number} < pairs_.size()) return;
    pairs_.push_back(std::bit_cast<float>(static_cast<uint32_t>(words >> 32)));
    pairs_.push_back(std::bit_cast<float>(static_cast<uint32_t>(words)));
  });
  return numbers;
}

uint64_t CoordinateTable::WordsOf(uint32_t pair) const {
  const float* uv = &pairs_[2 * size_t{pair}];
  return base::PairKey(std::bit_cast<uint32_t>(uv[0]), std::bit_cast<uint32_t>(uv[1]));
}

}  // namespace scene::gltf
