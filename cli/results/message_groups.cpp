// SPDX-License-Identifier: MIT
#include "results/message_groups.h"

#include "results/describe_finding.h"
#include "terminal/terminal.h"

namespace cli {

void MessageGroups::Add(const std::string& model, const ts3d::Finding& message) {
  const auto key = std::pair(-static_cast<int>(message.severity), message.code);
  Group& group = groups_.try_emplace(key, Group{message, {}}).first->second;
  if (group.models.empty() || group.models.back() != model) group.models.push_back(model);
}

void MessageGroups::Print(bool withNotes) const {
  bool areMany = false;
  for (const auto& [key, group] : groups_) {
    const size_t more = group.models.size() - 1;
    if (!withNotes && group.first.severity == Severity::Note) continue;
    areMany |= more > 0;
    TellFinding(group.models.front() + (more > 0 ? " and " + std::to_string(more) + " more" : ""),
                group.first);
  }
  if (areMany && withNotes)
    PrintMessage("", Severity::Note, "--verbose tells all messages of each model, --report FILE keeps them");
}

void TellFinding(const std::string& subject, const ts3d::Finding& message) {
  PrintMessage(subject, message.severity,
               DescribeFinding(message) + (message.fix.empty() ? "" : " " + message.fix));
}

}  // namespace cli
