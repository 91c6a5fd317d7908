// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "core/line_budget.h"
#include "driver/conversion_job.h"
#include "package/read_member.h"
#include "rig_check/choose_repairs.h"
#include "rig_check/rig_report.h"
#include "textures/texture_converter.h"

namespace ts3d {

/// What a conversion said and what came of it, for the host.
struct RunNotes {
  /// Keeps a status line, each text once and none that only counts, as far as there is room.
  void Take(const StatusLine& line);

  std::vector<std::string> lines;
  std::vector<textures::TextureProblem> textureProblems;
  std::vector<MemberSize> members;
  std::vector<NeededRepair> repairs;  ///< that were found to be needed
  std::vector<Finding> faults;        ///< of the rig, but for what kept it from being converted
  uint64_t packageBytes = 0;

 private:
  std::unordered_set<std::string> known_;
  LineBudget budget_;
};

/// The JSON of FbxToTs3dResultJson for each kind of call; its fields are in the host guide.
std::string ConversionAsJson(int32_t result, std::string_view error, const ConversionJob& job,
                             const RunNotes& notes);
std::string CheckAsJson(int32_t result, std::string_view error, const RigReport& report);
std::string ResultAsJson(int32_t result, std::string_view error);

}  // namespace ts3d
