// SPDX-License-Identifier: MIT
#include "results/model_result.h"

#include <nlohmann/json.hpp>

#include "core/similar_names.h"
#include "results/result_messages.h"

// What goes from the process that converts a model to the one that tells of it.
namespace ts3d {
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Finding, code, severity, subject, names, text, fix)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(MemberSize, name, bytes)
}  // namespace ts3d

namespace textures {
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(TextureProblem, source, text, isMissing)
}  // namespace textures

namespace cli {

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(UnmatchedOption, option, name, nearest)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ModelResult, model, code, reason, status, readerOutput, damage,
                                   malformedNames, said, notes, faults, textureProblems, unmatchedOptions,
                                   vertices, triangles, seconds, steps, isCurrent, shrunkPictures, inputs,
                                   beside, package, packageBytes, members)

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

std::string ToJson(const ModelResult& result) {
  // Names of files and models are no UTF-8 at times.
  return nlohmann::json(result).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

ModelResult ResultFromJson(std::string_view json) { return nlohmann::json::parse(json).get<ModelResult>(); }

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
