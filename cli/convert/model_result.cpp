// SPDX-License-Identifier: MIT
#include "convert/model_result.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "convert/result_messages.h"
#include "core/similar_names.h"
#include "output/describe_finding.h"
#include "output/json_parts.h"
#include "output/terminal.h"

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
    losses.push_back("the document cannot be read, as names have one of the signs & < \": " +
                     ts3d::QuotedNames(malformedNames) + "; rename them in the model");
  }
  return losses;
}

Json StepsAsJson(const StepSeconds& steps) {
  Json json = Json::object();
  for (const auto& [step, seconds] : steps) json[step] = seconds;
  return json;
}

Json ToJson(const ModelResult& result) {
  Json members = Json::array();
  for (const MemberSize& member : result.members) {
    members.push_back({{"name", member.name}, {"bytes", member.bytes}});
  }
  Json textures = Json::array();
  for (const textures::TextureProblem& problem : result.textureProblems) {
    textures.push_back(
        {{"source", problem.source}, {"problem", problem.text}, {"missing", problem.isMissing}});
  }
  Json unmatched = Json::array();
  for (const UnmatchedOption& entry : result.unmatchedOptions) {
    unmatched.push_back({{"option", entry.option}, {"name", entry.name}, {"nearest", entry.nearest}});
  }
  return {{"model", result.model},
          {"result", result.code},
          {"reason", result.reason},
          {"reader_output", result.readerOutput},
          {"status", result.status},
          {"damage", result.damage},
          {"malformed_names", result.malformedNames},
          {"notes", FindingsAsJson(result.notes)},
          {"faults", FindingsAsJson(result.faults)},
          {"textures", std::move(textures)},
          {"unmatched_options", std::move(unmatched)},
          {"vertices", result.vertices},
          {"triangles", result.triangles},
          {"seconds", result.seconds},
          {"steps", StepsAsJson(result.steps)},
          {"up_to_date", result.isCurrent},
          {"inputs", result.inputs},
          {"shrunk", result.shrunkPictures},
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
