// SPDX-License-Identifier: MIT
#pragma once

namespace ts3d {

// How much of a run is done when a step is.
inline constexpr double kModelLoaded = 0.25, kMeshesWritten = 0.6, kMeshesPacked = 0.95,
                        kMaterialsPacked = 0.99;

}  // namespace ts3d
