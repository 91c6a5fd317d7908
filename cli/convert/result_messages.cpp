// SPDX-License-Identifier: MIT
#include "convert/result_messages.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "convert/unmatched_options.h"
#include "converter/run_findings.h"
#include "output/exit_codes.h"

namespace cli {
namespace {

using ts3d::Finding;
using ts3d::Subject;

/// Coded warnings of the converter, "***100:...", as "status-100".
void AddCodedLines(const ModelResult& result, std::vector<Finding>& messages) {
  constexpr std::string_view kMark = "***";
  for (const std::string& line : result.status) {
    const size_t colon = line.find(':');
    if (!line.starts_with(kMark) || colon == std::string::npos) continue;
    messages.push_back({"status-" + line.substr(kMark.size(), colon - kMark.size()),
                        ts3d::Severity::Warning,
                        Subject::File,
                        {},
                        line.substr(colon + 1),
                        {}});
  }
}

}  // namespace

Finding UnmatchedFinding(const UnmatchedOption& unmatched, ts3d::Severity severity) {
  return {"unknown-name",
          severity,
          Subject::Option,
          {unmatched.name},
          DescribeUnmatched(unmatched, unmatched.nearest),
          {}};
}

std::vector<Finding> MessagesOf(const ModelResult& result) {
  std::vector<Finding> messages;
  const auto append = [&messages](std::vector<Finding> more) {
    std::move(more.begin(), more.end(), std::back_inserter(messages));
  };
  if (result.code != 0) {
    messages.push_back(ts3d::FailureFinding(result.code, result.reason));
    messages.back().code = NameOfExitCode(result.code);
  }
  AddCodedLines(result, messages);
  append(ts3d::DamageFindings(result.damage));
  append(ts3d::TextureFindings(result.textureProblems));
  if (!result.malformedNames.empty()) {
    messages.push_back({"xml-name", ts3d::Severity::Warning, Subject::Node, result.malformedNames,
                        "The document cannot be read, as names have one of the signs & < \".",
                        "Rename them in the model."});
  }
  append(result.faults);
  for (const UnmatchedOption& entry : result.unmatchedOptions)
    messages.push_back(UnmatchedFinding(entry, ts3d::Severity::Note));
  append(result.notes);
  std::stable_sort(messages.begin(), messages.end(),
                   [](const Finding& a, const Finding& b) { return a.severity > b.severity; });
  return messages;
}

}  // namespace cli
