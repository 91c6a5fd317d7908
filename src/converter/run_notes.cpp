// SPDX-License-Identifier: MIT
#include "converter/run_notes.h"

#include <nlohmann/json.hpp>

#include "rig_check/report_json.h"

namespace ts3d {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kJsonVersion = 1;

Json Head(int32_t result, std::string_view error) {
  return {{"version", kJsonVersion}, {"result", result}, {"error", error}};
}

/// Names are bytes of the model and need not be UTF-8.
std::string Text(const Json& json) { return json.dump(2, ' ', false, Json::error_handler_t::replace); }

}  // namespace

void RunNotes::Take(std::string_view line) {
  const bool onlyCounts = line.starts_with("Writing Mesh: ") && line.ends_with("% done");
  if (!onlyCounts && known_.emplace(line).second) lines.emplace_back(line);
}

std::string ConversionAsJson(int32_t result, std::string_view error, const ConversionJob& job,
                             const RunNotes& notes) {
  Json json = Head(result, error);
  json["vertices"] = job.vertexTotal;
  json["triangles"] = job.polygonTotal;
  json["actor_type"] = static_cast<int32_t>(job.actorType);
  json["package_bytes"] = notes.packageBytes;
  Json& members = json["members"] = Json::array();
  for (const MemberSize& member : notes.members) {
    members.push_back({{"name", member.name}, {"bytes", member.bytes}});
  }
  json["damage"] = job.damagedArrays;
  Json& pictures = json["textures"] = Json::array();
  for (const textures::TextureProblem& problem : notes.textureProblems) {
    pictures.push_back({{"source", problem.source}, {"problem", problem.text}});
  }
  Json& repairs = json["repairs"] = Json::array();
  for (const NeededRepair& repair : notes.repairs) {
    repairs.push_back(
        {{"repair", repair.option.substr(repair.option.find_first_not_of('-'))}, {"reason", repair.reason}});
  }
  json["notices"] = notes.lines;
  return Text(json);
}

std::string CheckAsJson(int32_t result, std::string_view error, const RigReport& report) {
  Json json = Head(result, error);
  json["check"] = ReportAsJson(report);
  return Text(json);
}

std::string ResultAsJson(int32_t result, std::string_view error) { return Text(Head(result, error)); }

}  // namespace ts3d
