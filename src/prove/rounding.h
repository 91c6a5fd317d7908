// SPDX-License-Identifier: MIT
#pragma once

namespace prove {

// What rounding to single precision may do to what is stored: entries of a rotation, places in parts of the
// model's diagonal and in parts of their own size, weights.
inline constexpr double kTurnRounding = 3e-6;
inline constexpr double kPlaceRounding = 2e-6;
inline constexpr double kRelativeRounding = 1e-6;
inline constexpr double kWeightRounding = 1e-5;

}  // namespace prove
