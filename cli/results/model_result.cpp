// SPDX-License-Identifier: MIT
#include "results/model_result.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "core/json_output.h"
#include "core/similar_names.h"
#include "results/describe_finding.h"
#include "results/result_messages.h"
#include "terminal/terminal.h"

namespace cli {
namespace {

using Json = nlohmann::ordered_json;

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
    losses.push_back("the document cannot be read, as names contain &, < or \": " +
                     ts3d::QuotedNames(malformedNames) + "; rename them in the model");
  }
  return losses;
}

void WriteResult(ts3d::JsonWriter& json, const ModelResult& result) {
  json.Member("model", result.model);
  json.Member("result", result.code);
  json.Member("status", result.status);
  json.Member("reader_output", result.readerOutput);
  json.Member("vertices", result.vertices);
  json.Member("triangles", result.triangles);
  json.Member("seconds", result.seconds);
  json.OpenObject("steps");
  for (const auto& [step, seconds] : result.steps) json.Member(step, seconds);
  json.CloseObject();
  json.Member("up_to_date", result.isCurrent);
  json.Member("inputs", result.inputs);
  json.Member("package", result.package);
  json.Member("package_bytes", result.packageBytes);
  ts3d::WriteMembers(json, result.members);
}

std::string ToJson(const ModelResult& result) {
  ts3d::JsonWriter json(ts3d::JsonWriter::Layout::Compact);
  json.OpenObject();
  WriteResult(json, result);
  json.Member("reason", result.reason);
  json.Member("damage", result.damage);
  json.Member("malformed_names", result.malformedNames);
  json.Key("said");
  ts3d::WriteFindings(json, result.said);
  json.Key("notes");
  ts3d::WriteFindings(json, result.notes);
  json.Key("faults");
  ts3d::WriteFindings(json, result.faults);
  json.Objects("textures", result.textureProblems, [&](const textures::TextureProblem& problem) {
    json.Member("source", problem.source);
    json.Member("problem", problem.text);
    json.Member("missing", problem.isMissing);
  });
  json.Objects("unmatched_options", result.unmatchedOptions, [&](const UnmatchedOption& entry) {
    json.Member("option", entry.option);
    json.Member("name", entry.name);
    json.Member("nearest", entry.nearest);
  });
  json.Member("shrunk", result.shrunkPictures);
  json.CloseObject();
  return json.Text();
}

ModelResult ResultFromJson(std::string_view text) {
  const Json json = Json::parse(text);
  ModelResult result;
  json.at("model").get_to(result.model);
  json.at("result").get_to(result.code);
  json.at("reason").get_to(result.reason);
  json.at("reader_output").get_to(result.readerOutput);
  json.at("status").get_to(result.status);
  json.at("damage").get_to(result.damage);
  json.at("malformed_names").get_to(result.malformedNames);
  for (const Json& said : json.at("said")) result.said.push_back(FindingFromJson(said));
  for (const Json& note : json.at("notes")) result.notes.push_back(FindingFromJson(note));
  for (const Json& fault : json.at("faults")) result.faults.push_back(FindingFromJson(fault));
  for (const Json& texture : json.at("textures")) {
    result.textureProblems.push_back({texture.at("source").get<std::string>(),
                                      texture.at("problem").get<std::string>(),
                                      texture.at("missing").get<bool>()});
  }
  for (const Json& entry : json.at("unmatched_options")) {
    result.unmatchedOptions.push_back({entry.at("option").get<std::string>(),
                                       entry.at("name").get<std::string>(),
                                       entry.at("nearest").get<std::vector<std::string>>()});
  }
  json.at("vertices").get_to(result.vertices);
  json.at("triangles").get_to(result.triangles);
  json.at("seconds").get_to(result.seconds);
  for (const auto& [step, seconds] : json.at("steps").items())
    result.steps.emplace_back(step, seconds.get<double>());
  json.at("up_to_date").get_to(result.isCurrent);
  json.at("inputs").get_to(result.inputs);
  json.at("shrunk").get_to(result.shrunkPictures);
  json.at("package").get_to(result.package);
  json.at("package_bytes").get_to(result.packageBytes);
  for (const Json& member : json.at("members")) {
    result.members.push_back({member.at("name").get<std::string>(), member.at("bytes").get<uint64_t>()});
  }
  return result;
}

Totals Sum(const std::vector<ModelResult>& results) {
  Totals totals;
  for (const ModelResult& result : results) {
    totals.succeeded += result.code == 0 ? 1 : 0;
    totals.vertices += result.vertices;
    totals.triangles += result.triangles;
    totals.packageBytes += result.packageBytes;
    for (const ts3d::Finding& message : MessagesOf(result))
      totals.warnings += message.severity == ts3d::Severity::Warning;
  }
  return totals;
}

}  // namespace cli
