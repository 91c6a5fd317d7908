// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "driver/conversion_job.h"

namespace cli {

/// What the converter calls back during a job, as functions. It must outlive the job's run.
struct JobHost {
  /// Takes a status line without line end.
  std::function<void(std::string_view line)> onStatus;
  /// Converts the picture `source`; tells whether its ".tga" file is there afterwards. `exists`: it is there
  /// already. May be empty.
  std::function<bool(const std::string& source, bool exists)> onTexture;

  void Attach(ts3d::ConversionJob& job);
};

}  // namespace cli
