// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

/// Hands memory that was freed back to the system, where the C library keeps it.
void ReturnFreedMemory();

// The others are for programs alone: a library leaves the heap to its host.

/// Keeps freed memory for what comes next. Large arrays go back to the system at once nevertheless.
void KeepFreedMemory();

/// Trades memory, some 6 MiB, for time: keeps larger arrays as well, and has the heap grow in large pages where
/// the system gives such, each for hundreds of small ones.
void SpendMemory();

}  // namespace platform
