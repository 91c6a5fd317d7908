// SPDX-License-Identifier: MIT
#include "convert/model_result.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "core/similar_names.h"
#include "core/visible_text.h"
#include "core/work_file.h"
#include "output/describe_finding.h"
#include "output/exit_codes.h"
#include "output/terminal.h"
#include "platform/replacement.h"
#include "rig_check/report_json.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

using Json = nlohmann::ordered_json;

constexpr int kReportVersion = 1;

struct Totals {
  size_t succeeded = 0;
  int64_t vertices = 0, triangles = 0;
  uint64_t packageBytes = 0;
  int warnings = 0;
};

/// Coded warnings, pictures that are missing and damage.
int CountWarnings(const ModelResult& result) {
  auto count =
      static_cast<int>(result.textureProblems.size() + result.damage.size() + result.malformedNames.size());
  for (const ts3d::Finding& fault : result.faults) count += fault.severity == ts3d::Severity::Warning;
  for (const auto& [code, times] : result.Warnings()) count += times;
  return count;
}

Totals Sum(const std::vector<ModelResult>& results) {
  Totals totals;
  for (const ModelResult& result : results) {
    totals.succeeded += result.code == 0 ? 1 : 0;
    totals.vertices += result.vertices;
    totals.triangles += result.triangles;
    totals.packageBytes += result.packageBytes;
    totals.warnings += CountWarnings(result);
  }
  return totals;
}

std::string TableLine(const std::string& name, const std::string& outcome, const Totals& totals,
                      double seconds, int nameWidth) {
  char numbers[160];
  std::snprintf(numbers, sizeof numbers, "  %-7s %10lld %10lld %9d %12llu %8.2f\n", outcome.c_str(),
                static_cast<long long>(totals.vertices), static_cast<long long>(totals.triangles),
                totals.warnings, static_cast<unsigned long long>(totals.packageBytes), seconds);
  std::string padded = Printable(name);
  padded.resize(std::max(padded.size(), static_cast<size_t>(nameWidth)), ' ');
  return padded + numbers;
}

/// Writes the whole file `path` in one step. A pipe or a device is written to; only files are replaced.
bool WriteText(const std::string& path, const std::string& text) {
  std::error_code unknown;
  const fs::file_status target = fs::status(path, unknown);
  if (fs::exists(target) && !fs::is_regular_file(target)) {
    std::ofstream file(path, std::ios::binary);
    return static_cast<bool>(file << text << std::flush);
  }
  platform::Replacement report(path);
  platform::FilePtr file = report.Create("wb");
  return file && ts3d::WriteAndClose(std::move(file), text) && report.TakePlace();
}

}  // namespace

std::vector<std::string> ModelResult::Losses() const {
  std::vector<std::string> losses;
  for (const std::string& array : damage) {
    losses.push_back("the file is damaged: " + array + " cannot be unpacked, and what it holds is missing");
  }
  for (const textures::TextureProblem& problem : textureProblems) {
    losses.push_back("texture " + problem.source + " " + problem.text);
  }
  if (!malformedNames.empty()) {
    losses.push_back("the document cannot be read, as names have one of the signs & < \": " +
                     ts3d::QuotedNames(malformedNames) + "; rename them in the model");
  }
  return losses;
}

std::map<std::string, int> ModelResult::Warnings() const {
  constexpr std::string_view kMark = "***";
  std::map<std::string, int> counts;
  for (const std::string& line : status) {
    if (line.starts_with(kMark)) ++counts[line.substr(kMark.size(), line.find(':') - kMark.size())];
  }
  return counts;
}

Json ToJson(const ModelResult& result) {
  Json members = Json::array();
  for (const MemberSize& member : result.members) {
    members.push_back({{"name", member.name}, {"bytes", member.bytes}});
  }
  Json faults = Json::array();
  for (const ts3d::Finding& fault : result.faults) faults.push_back(ts3d::FindingAsJson(fault));
  Json textures = Json::array();
  for (const textures::TextureProblem& problem : result.textureProblems) {
    textures.push_back({{"source", problem.source}, {"problem", problem.text}});
  }
  Json unmatched = Json::array();
  for (const UnmatchedOption& entry : result.unmatchedOptions) {
    unmatched.push_back({{"option", entry.option}, {"name", entry.name}, {"nearest", entry.nearest}});
  }
  return {{"model", result.model},
          {"result", result.code},
          {"meaning", DescribeExitCode(result.code)},
          {"reason", result.reason},
          {"reader_output", result.readerOutput},
          {"status", result.status},
          {"warnings", result.Warnings()},
          {"damage", result.damage},
          {"malformed_names", result.malformedNames},
          {"notes", result.notes},
          {"faults", std::move(faults)},
          {"textures", std::move(textures)},
          {"unmatched_options", std::move(unmatched)},
          {"vertices", result.vertices},
          {"triangles", result.triangles},
          {"seconds", result.seconds},
          {"package", result.package},
          {"package_bytes", result.packageBytes},
          {"members", std::move(members)}};
}

ModelResult ResultFromJson(const Json& json) {
  ModelResult result;
  json.at("model").get_to(result.model);
  json.at("result").get_to(result.code);
  json.at("reason").get_to(result.reason);
  json.at("reader_output").get_to(result.readerOutput);
  json.at("status").get_to(result.status);
  json.at("damage").get_to(result.damage);
  json.at("malformed_names").get_to(result.malformedNames);
  json.at("notes").get_to(result.notes);
  for (const Json& fault : json.at("faults")) result.faults.push_back(FindingFromJson(fault));
  for (const Json& texture : json.at("textures")) {
    result.textureProblems.push_back(
        {texture.at("source").get<std::string>(), texture.at("problem").get<std::string>()});
  }
  for (const Json& entry : json.at("unmatched_options")) {
    result.unmatchedOptions.push_back({entry.at("option").get<std::string>(),
                                       entry.at("name").get<std::string>(),
                                       entry.at("nearest").get<std::vector<std::string>>()});
  }
  json.at("vertices").get_to(result.vertices);
  json.at("triangles").get_to(result.triangles);
  json.at("seconds").get_to(result.seconds);
  json.at("package").get_to(result.package);
  json.at("package_bytes").get_to(result.packageBytes);
  for (const Json& member : json.at("members")) {
    result.members.push_back({member.at("name").get<std::string>(), member.at("bytes").get<uint64_t>()});
  }
  return result;
}

void WriteReport(const std::string& path, const std::vector<ModelResult>& results, double seconds) {
  const Totals totals = Sum(results);
  Json report = {{"report", "fbx2czp convert"},
                 {"version", kReportVersion},
                 {"tool", FBX_TO_TS3D_VERSION},
                 {"totals",
                  {{"models", results.size()},
                   {"succeeded", totals.succeeded},
                   {"failed", results.size() - totals.succeeded},
                   {"vertices", totals.vertices},
                   {"triangles", totals.triangles},
                   {"package_bytes", totals.packageBytes},
                   {"seconds", seconds}}},
                 {"models", Json::array()}};
  for (const ModelResult& result : results) report["models"].push_back(ToJson(result));
  // Names may be in any code page; what is no UTF-8 shows as a replacement character.
  if (!WriteText(path,
                 ts3d::VisibleLines(report.dump(2, ' ', false, Json::error_handler_t::replace)) + '\n')) {
    throw std::runtime_error(path + ": the report cannot be written");
  }
}

std::string SummaryTable(const std::vector<ModelResult>& results, double seconds) {
  size_t nameWidth = 5;
  for (const ModelResult& result : results) nameWidth = std::max(nameWidth, Printable(result.model).size());
  const int width = static_cast<int>(std::min<size_t>(nameWidth, 60));
  char header[200];
  std::snprintf(header, sizeof header,
                "%-*s  result      points  triangles  warnings        bytes  seconds\n", width, "model");
  std::string table = header;
  for (const ModelResult& result : results) {
    const std::string outcome = result.code == 0 ? "ok" : "code " + std::to_string(result.code);
    table += TableLine(result.model, outcome, Sum({result}), result.seconds, width);
  }
  const Totals totals = Sum(results);
  const std::string outcome = std::to_string(totals.succeeded) + "/" + std::to_string(results.size());
  return table + TableLine("all", outcome, totals, seconds, width);
}

}  // namespace cli
