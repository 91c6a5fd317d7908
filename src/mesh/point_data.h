// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace ts3d {

/// One candidate for an output vertex. Its position and normal are those of its control point.
struct FullPointData {
  int32_t controlPoint = 0;
  int32_t textureIndex = -1;   ///< of its texture coordinate; -1: none assigned
  int32_t influenceList = -1;  ///< control point whose influences it uses; -1: none assigned
};

}  // namespace ts3d
