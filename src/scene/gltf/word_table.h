// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "base/mixed_hash.h"

namespace scene::gltf {

/// Numbers equal keys, all of `width` words, in the order in which they come.
class WordTable {
 public:
  explicit WordTable(size_t width) : width_(width) {}

  /// Makes room for `count` further keys.
  void Expect(size_t count) {
    words_.reserve((count_ + count) * width_);
    size_t slots = std::max(slots_.size(), kFirst);
    while (slots < 2 * (count_ + count + 1)) slots *= 2;
    if (slots > slots_.size()) Grow(slots);
  }
  /// Number of the key at `words`.
  uint32_t NumberOf(const uint32_t* words) {
    if (2 * (count_ + 1) > slots_.size()) Grow(std::max(2 * slots_.size(), kFirst));
    for (size_t slot = Hash(words) & (slots_.size() - 1);; slot = (slot + 1) & (slots_.size() - 1)) {
      if (slots_[slot] == 0) {
        words_.insert(words_.end(), words, words + width_);
        return (slots_[slot] = ++count_) - 1;
      }
      if (std::equal(words, words + width_, At(slots_[slot] - 1))) return slots_[slot] - 1;
    }
  }
  const uint32_t* At(uint32_t number) const { return words_.data() + size_t{number} * width_; }
  uint32_t size() const { return count_; }
  /// The most bytes that `count` further keys of `width` words can take.
  static uint64_t MostMemory(uint64_t count, size_t width) {
    return count * (2 * width + 8) * sizeof(uint32_t);
  }

 private:
  static constexpr size_t kFirst = 64;

  size_t Hash(const uint32_t* words) const {
    uint64_t hash = 0;
    for (size_t i = 0; i < width_; i += 2) {
      hash = hash_(hash ^ base::PairKey(words[i], i + 1 < width_ ? words[i + 1] : 0));
    }
    return static_cast<size_t>(hash);
  }
  void Grow(size_t slots) {
    slots_.assign(slots, 0);
    for (uint32_t i = 0; i < count_; ++i) {
      size_t slot = Hash(At(i)) & (slots_.size() - 1);
      while (slots_[slot] != 0) slot = (slot + 1) & (slots_.size() - 1);
      slots_[slot] = i + 1;
    }
  }

  base::MixedHash hash_;
  size_t width_;
  uint32_t count_ = 0;
  std::vector<uint32_t> words_;
  std::vector<uint32_t> slots_;  ///< numbers from 1; 0 is free
};

}  // namespace scene::gltf
