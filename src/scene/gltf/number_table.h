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
      *FindSlot(digestOf(number), [](uint32_t) { return false; }) = number + 1;
    }
  }
  /// Number of what has `digest`: that of something equal, or the next, for which there must be room.
  /// @param isEqual  tells whether it is equal to what has a number
  template <class IsEqual>
  uint32_t NumberOf(uint64_t digest, const IsEqual& isEqual) {
    uint32_t& slot = *FindSlot(digest, isEqual);
    if (slot == 0) slot = ++count_;
    return slot - 1;
  }
  /// Calls `use` with each place below `count` and its digest, which `digestAt` gives. What NumberOf will look
  /// at is fetched while other digests are made.
  template <class DigestAt, class Use>
  void ForEachAhead(size_t count, const DigestAt& digestAt, const Use& use) const {
    constexpr size_t kAhead = 32;
    uint64_t digests[kAhead];
    for (size_t begin = 0; begin < count; begin += kAhead) {
      const size_t end = std::min(begin + kAhead, count);
      for (size_t i = begin; i < end; ++i) {
        digests[i - begin] = digestAt(i);
        __builtin_prefetch(&slots_[SlotOf(digests[i - begin])]);
      }
      for (size_t i = begin; i < end; ++i) use(i, digests[i - begin]);
    }
  }
  uint32_t size() const { return count_; }
  /// The most bytes that room for `count` further numbers takes.
  static uint64_t MostMemory(uint64_t count) { return 4 * count * sizeof(uint32_t); }

 private:
  static constexpr size_t kFirst = 64;

  size_t SlotOf(uint64_t digest) const { return base::MixedHash()(digest) & (slots_.size() - 1); }
  template <class IsEqual>
  uint32_t* FindSlot(uint64_t digest, const IsEqual& isEqual) {
    size_t slot = SlotOf(digest);
    while (slots_[slot] != 0 && !isEqual(slots_[slot] - 1)) slot = (slot + 1) & (slots_.size() - 1);
    return &slots_[slot];
  }

  uint32_t count_ = 0;
  std::vector<uint32_t> slots_;  ///< numbers from 1; 0 is free
};

}  // namespace scene::gltf
