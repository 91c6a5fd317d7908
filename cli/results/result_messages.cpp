// SPDX-License-Identifier: MIT
#include "results/result_messages.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "converter/run_findings.h"
#include "results/unmatched_options.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_report.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace {

using ts3d::Finding;
using ts3d::Subject;

constexpr const char* kUnreadableDocument = "xml-name";

}  // namespace

Finding UnmatchedFinding(const UnmatchedOption& unmatched, ts3d::Severity severity) {
  return {"unknown-name",
          severity,
          Subject::Option,
          {unmatched.name},
          DescribeUnmatched(unmatched, unmatched.nearest),
          {}};
}

bool IsLoss(const Finding& message) {
  return message.subject == Subject::Texture || message.code == ts3d::findings::kDamagedArray.code ||
         message.code == kUnreadableDocument;
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
  append(result.said);
  append(ts3d::DamageFindings(result.damage));
  append(ts3d::TextureFindings(result.textureProblems));
  if (!result.malformedNames.empty()) {
    messages.push_back({kUnreadableDocument, ts3d::Severity::Warning, Subject::Node, result.malformedNames,
                        "The document cannot be read, as names contain &, < or \".",
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
