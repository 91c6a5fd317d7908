// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "core/status_channel.h"
#include "rig_check/rig_report.h"

namespace cli {

/// Findings of what a run says on its way, and no other finding tells.
class NoticeFindings {
 public:
  void Take(const ts3d::StatusLine& line);
  /// All of them, when the run has ended.
  std::vector<ts3d::Finding> Take();

 private:
  ts3d::RigReport report_;
  size_t missingCoordinates_ = 0;
};

}  // namespace cli
