// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "base/mixed_hash.h"

namespace scene::gltf {

/// Numbers what is equal, in the order in which it comes. It has the numbers alone; what they are of is with the
/// caller, who compares it and gives a digest of it.
class NumberTable {
 public:
  /// Makes room for `count` further numbers.
  /// @param digestOf  gives the digest of what has a number
  template <class DigestOf>
  void Expect(size_t count, const DigestOf& digestOf) {
    size_t slots = std::max(slots_.size(), kFirst);
    while (slots < 2 * (count_ + count + 1)) slots *= 2;
    if (slots == slots_.size()) return;
    slots_.assign(slots, 0);
    for (uint32_t number = 0; number < count_; ++number) {
      const uint64_t hash = HashOf(digestOf(number));
      if (uint32_t* slot = FindSlot(hash, [](uint32_t) { return false; })) *slot = TagOf(hash) | (number + 1);
    }
  }
  static uint64_t HashOf(uint64_t digest) { return base::MixedHash()(digest); }
  /// Number of what has a digest with `hash`: that of something equal, or the next, for which there must be room.
  /// A file may have many things of one digest; what is unlike kMostCompared of them is not found again.
  /// @param isEqual  tells whether it is equal to what has a number
  template <class IsEqual>
  uint32_t NumberOf(uint64_t hash, const IsEqual& isEqual) {
    uint32_t* const slot = FindSlot(hash, isEqual);
    if (!slot) return count_++;
    if (*slot == 0) *slot = TagOf(hash) | ++count_;
    return NumberIn(*slot);
  }
  /// Gives the next number to what has a digest with `hash`, if nothing is where it is looked up first.
  bool TakeFirst(uint64_t hash) {
    uint32_t& slot = slots_[static_cast<size_t>(hash) & (slots_.size() - 1)];
    if (slot != 0) return false;
    slot = TagOf(hash) | ++count_;
    return true;
  }
  /// Calls `use` with each place below `count`, its digest, which `digestAt` gives, and the hash of that. What
  /// NumberOf will look at is fetched while other digests are made.
  template <class DigestAt, class Use>
  void ForEachAhead(size_t count, const DigestAt& digestAt, const Use& use) const {
    constexpr size_t kAhead = 32;
    uint64_t digests[kAhead], hashes[kAhead];
    for (size_t begin = 0; begin < count; begin += kAhead) {
      const size_t size = std::min(kAhead, count - begin);
      for (size_t i = 0; i < size; ++i) {
        digests[i] = digestAt(begin + i);
        hashes[i] = HashOf(digests[i]);
        __builtin_prefetch(&slots_[static_cast<size_t>(hashes[i]) & (slots_.size() - 1)]);
      }
      for (size_t i = 0; i < size; ++i) use(begin + i, digests[i], hashes[i]);
    }
  }
  uint32_t size() const { return count_; }
  /// The most bytes that room for `count` further numbers takes.
  static uint64_t MostMemory(uint64_t count) { return 4 * count * sizeof(uint32_t); }

 private:
  static constexpr size_t kFirst = 64;
  static constexpr int kMostCompared = 64;

  /// Fewer than half of the slots are taken, so numbers leave bits free for a part of the hash.
  uint32_t TagOf(uint64_t hash) const {
    return static_cast<uint32_t>(hash >> 32) & ~static_cast<uint32_t>(slots_.size() - 1);
  }
  uint32_t NumberIn(uint32_t slot) const { return (slot & static_cast<uint32_t>(slots_.size() - 1)) - 1; }
  /// The slot of what is equal, or a free one.
  template <class IsEqual>
  uint32_t* FindSlot(uint64_t hash, const IsEqual& isEqual) {
    const size_t mask = slots_.size() - 1;
    int compared = 0;
    for (size_t i = static_cast<size_t>(hash) & mask;; i = (i + 1) & mask) {
      uint32_t* const slot = &slots_[i];
      if (*slot == 0) return slot;
      if (((*slot ^ TagOf(hash)) & ~mask) != 0) continue;
      if (isEqual(NumberIn(*slot))) return slot;
      if (++compared == kMostCompared) return nullptr;
    }
  }

  uint32_t count_ = 0;
  std::vector<uint32_t> slots_;  ///< a part of the hash and, in the lower bits, a number from 1; 0 is free
};

}  // namespace scene::gltf
