// SPDX-License-Identifier: MIT
#pragma once

#include "core/conversion_job.h"

namespace ts3d {

// How much of a run is done when a step is.
inline constexpr double kModelLoaded = 0.25, kMeshesWritten = 0.6, kMeshesPacked = 0.95,
                        kMaterialsPacked = 0.99;

/// Tells the host how much of the run is done, from 0 to 1.
inline void ReportProgress(const ConversionJob& job, double fraction) {
  if (job.onProgress) job.onProgress(fraction);
}

/// The same for `done` of the `total` parts of a step that lies between two fractions of the run.
inline void ReportProgress(const ConversionJob& job, double from, double to, size_t done, size_t total) {
  ReportProgress(job, from + (to - from) * static_cast<double>(done) / static_cast<double>(total));
}

}  // namespace ts3d
