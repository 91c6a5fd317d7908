// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "platform/file_system.h"
#include "rig_check/rig_report.h"

namespace cli {

/// A report and the model that it is about.
struct CheckedModel {
  std::string name;  ///< as the user gave it
  ts3d::RigReport report;
  std::vector<std::string> renames;  ///< of a preset, "old=new"
};

/// Prints what the package would hold, then the findings, to standard output.
/// @param quiet  only the findings that are more than notes
/// @param isOneOfMany  puts the model's name above, unless there is nothing to tell
void PrintReport(const CheckedModel& model, bool quiet, bool isOneOfMany);

/// All reports as one JSON text; docs/check.md describes it.
std::string ReportsAsJson(const std::vector<CheckedModel>& models);

}  // namespace cli
