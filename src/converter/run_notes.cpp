// SPDX-License-Identifier: MIT
#include "converter/run_notes.h"

#include <algorithm>

#include "converter/run_findings.h"
#include "core/json_output.h"
#include "fbx_to_ts3d.h"
#include "rig_check/report_json.h"

namespace ts3d {
namespace {

constexpr int kJsonVersion = 2;

/// Opens the object that the JSON of every call is.
/// @param messages  beside that of the failure, if it is one
void WriteHead(JsonWriter& json, int32_t result, std::string_view error,
               const std::vector<Finding>& messages = {}) {
  json.OpenObject();
  WriteJsonHead(json, "library", kJsonVersion);
  json.Member("result", result);
  json.Member("error", error);
  json.OpenArray("messages");
  if (result != FBX_TO_TS3D_OK) WriteFinding(json, FailureFinding(result, std::string(error)));
  for (const Finding& message : messages) WriteFinding(json, message);
  json.CloseArray();
}

std::string End(JsonWriter& json) {
  json.CloseObject();
  return JsonText(json.Text());
}

void WriteRepairs(JsonWriter& json, const std::vector<NeededRepair>& repairs) {
  json.Objects("repairs", repairs, [&](const NeededRepair& repair) {
    json.Member("repair", repair.option.substr(repair.option.find_first_not_of('-')));
    json.Member("reason", repair.reason);
  });
}

}  // namespace

void RunNotes::Take(const StatusLine& line) {
  if (IsProgress(line.notice)) return;
  const auto [known, isNew] = known_.emplace(line.text);
  if (!isNew) return;
  if (budget_.Takes(line)) {
    lines.emplace_back(line.text);
  } else {
    known_.erase(known);
  }
}

std::string ConversionAsJson(int32_t result, std::string_view error, const ConversionJob& job,
                             const RunNotes& notes) {
  std::vector<Finding> messages = DamageFindings(job.damagedArrays);
  for (Finding& message : TextureFindings(notes.textureProblems)) messages.push_back(std::move(message));
  messages.insert(messages.end(), notes.faults.begin(), notes.faults.end());
  std::stable_sort(messages.begin(), messages.end(),
                   [](const Finding& a, const Finding& b) { return a.severity > b.severity; });
  JsonWriter json;
  WriteHead(json, result, error, messages);
  json.Member("vertices", job.vertexTotal);
  json.Member("triangles", job.polygonTotal);
  json.Member("actor_type", static_cast<int32_t>(job.actorType));
  json.Member("package_bytes", notes.packageBytes);
  WriteMembers(json, notes.members);
  WriteRepairs(json, notes.repairs);
  json.Member("notices", notes.lines);
  return End(json);
}

std::string CheckAsJson(int32_t result, std::string_view error, const RigReport& report) {
  JsonWriter json;
  WriteHead(json, result, error);
  json.OpenObject("check");
  WriteReport(json, report);
  json.CloseObject();
  return End(json);
}

std::string ResultAsJson(int32_t result, std::string_view error) {
  JsonWriter json;
  WriteHead(json, result, error);
  return End(json);
}

}  // namespace ts3d
