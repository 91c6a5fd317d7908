// SPDX-License-Identifier: MIT
#include "platform/heap.h"

#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace platform {
namespace {

constexpr int kMostFreed = 32 << 20, kLargeArray = 2 << 20, kVeryLargeArray = 8 << 20, kLargePages = 16 << 20;

}  // namespace

void ReturnFreedMemory() { malloc_trim(0); }

void KeepFreedMemory() {
  mallopt(M_TRIM_THRESHOLD, kMostFreed);
  mallopt(M_MMAP_THRESHOLD, kLargeArray);
}

void SpendMemory() {
  constexpr uintptr_t kPage = 4096;
  // What is taken from the heap's end and given back untouched stays there.
  mallopt(M_MMAP_THRESHOLD, kLargePages + static_cast<int>(kPage));
  const std::unique_ptr<void, void (*)(void*)> room(std::malloc(kLargePages), std::free);
  const uintptr_t first = (reinterpret_cast<uintptr_t>(room.get()) + kPage - 1) & ~(kPage - 1);
  if (room) madvise(reinterpret_cast<void*>(first), kLargePages - kPage, MADV_HUGEPAGE);
  mallopt(M_MMAP_THRESHOLD, kVeryLargeArray);
}

}  // namespace platform
#else

namespace platform {

void ReturnFreedMemory() {}
void KeepFreedMemory() {}
void SpendMemory() {}

}  // namespace platform
#endif
