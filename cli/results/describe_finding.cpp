// SPDX-License-Identifier: MIT
#include "results/describe_finding.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace cli {

std::string DescribeFinding(const ts3d::Finding& finding) {
  constexpr size_t kMostNames = 6;
  // A text that names the only name needs no more.
  const bool isNamed =
      finding.names.size() == 1 && finding.text.find("\"" + finding.names[0] + "\"") != std::string::npos;
  if (finding.names.empty() || isNamed) return finding.text;
  std::string text(NameOf(finding.subject, finding.names.size()));
  const size_t shown = std::min(finding.names.size(), kMostNames);
  for (size_t i = 0; i < shown; ++i) text += (i == 0 ? " \"" : ", \"") + finding.names[i] + "\"";
  if (shown < finding.names.size()) text += " and " + std::to_string(finding.names.size() - shown) + " more";
  return text + ": " + finding.text;
}

ts3d::Finding FindingFromJson(const nlohmann::ordered_json& json) {
  ts3d::Finding finding;
  json.at("code").get_to(finding.code);
  json.at("where").at("names").get_to(finding.names);
  json.at("message").get_to(finding.text);
  json.at("fix").get_to(finding.fix);
  for (const auto severity : {ts3d::Severity::Note, ts3d::Severity::Warning, ts3d::Severity::Error}) {
    if (json.at("severity") == NameOf(severity)) finding.severity = severity;
  }
  for (int subject = 0; subject <= static_cast<int>(ts3d::Subject::Option); ++subject) {
    if (json.at("where").at("kind") == NameOf(ts3d::Subject{subject}))
      finding.subject = ts3d::Subject{subject};
  }
  return finding;
}

}  // namespace cli
