// SPDX-License-Identifier: MIT
#include "converter/run_notes.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "converter/run_findings.h"
#include "fbx_to_ts3d.h"
#include "rig_check/report_json.h"

namespace ts3d {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kJsonVersion = 2;

/// @param messages  beside that of the failure, if it is one
Json Head(int32_t result, std::string_view error, const std::vector<Finding>& messages = {}) {
  Json json = JsonHead("library", kJsonVersion);
  json["result"] = result;
  json["error"] = error;
  Json& list = json["messages"] = Json::array();
  if (result != FBX_TO_TS3D_OK) list.push_back(FindingAsJson(FailureFinding(result, std::string(error))));
  for (const Finding& message : messages) list.push_back(FindingAsJson(message));
  return json;
}

}  // namespace

void RunNotes::Take(std::string_view line) {
  const bool onlyCounts = line.starts_with("Writing Mesh: ") && line.ends_with("% done");
  if (!onlyCounts && known_.emplace(line).second) lines.emplace_back(line);
}

std::string ConversionAsJson(int32_t result, std::string_view error, const ConversionJob& job,
                             const RunNotes& notes) {
  std::vector<Finding> messages = DamageFindings(job.damagedArrays);
  for (Finding& message : TextureFindings(notes.textureProblems)) messages.push_back(std::move(message));
  messages.insert(messages.end(), notes.faults.begin(), notes.faults.end());
  std::stable_sort(messages.begin(), messages.end(),
                   [](const Finding& a, const Finding& b) { return a.severity > b.severity; });
  Json json = Head(result, error, messages);
  json["vertices"] = job.vertexTotal;
  json["triangles"] = job.polygonTotal;
  json["actor_type"] = static_cast<int32_t>(job.actorType);
  json["package_bytes"] = notes.packageBytes;
  Json& members = json["members"] = Json::array();
  for (const MemberSize& member : notes.members) {
    members.push_back({{"name", member.name}, {"bytes", member.bytes}});
  }
  Json& repairs = json["repairs"] = Json::array();
  for (const NeededRepair& repair : notes.repairs) {
    repairs.push_back(
        {{"repair", repair.option.substr(repair.option.find_first_not_of('-'))}, {"reason", repair.reason}});
  }
  json["notices"] = notes.lines;
  return JsonText(json);
}

std::string CheckAsJson(int32_t result, std::string_view error, const RigReport& report) {
  Json json = Head(result, error);
  json["check"] = ReportAsJson(report);
  return JsonText(json);
}

std::string ResultAsJson(int32_t result, std::string_view error) { return JsonText(Head(result, error)); }

}  // namespace ts3d
