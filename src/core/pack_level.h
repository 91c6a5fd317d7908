// SPDX-License-Identifier: MIT
#pragma once

namespace ts3d {

/// Levels of libdeflate, which go from 0 (stored) to 12. For how they compare see docs/performance.md.
inline constexpr int kFastPackLevel = 3;
inline constexpr int kDefaultPackLevel = 7;
inline constexpr int kSmallestPackLevel = 12;

}  // namespace ts3d
