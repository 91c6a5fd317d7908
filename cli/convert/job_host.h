// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "driver/conversion_job.h"

namespace cli {

/// Takes a status line when it comes.
using TakeStatus = std::function<void(const ts3d::StatusLine& line)>;

/// A status line as bytes, for the way to another process.
std::string PackedLine(const ts3d::StatusLine& line);
/// The opposite; refers to `packed`.
ts3d::StatusLine UnpackedLine(std::string_view packed);

/// What the converter calls back during a job, as functions. It must outlive the job's run.
struct JobHost {
  TakeStatus onStatus;
  /// Converts the picture `source`; tells whether its ".tga" file is there afterwards. `exists`: it is there
  /// already. May be empty.
  std::function<bool(const std::string& source, bool exists)> onTexture;

  void Attach(ts3d::ConversionJob& job);
};

}  // namespace cli
