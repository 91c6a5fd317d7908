// SPDX-License-Identifier: MIT
#include "rig_check/rig_report.h"

#include <algorithm>

#include "rig_check/finding_kinds.h"

namespace ts3d {
namespace {

std::string Fill(std::string_view text, const std::vector<std::string>& values) {
  std::string filled;
  for (const std::string& value : values) {
    const size_t at = text.find("{}");
    if (at == std::string_view::npos) break;
    filled.append(text.substr(0, at)).append(value);
    text.remove_prefix(at + 2);
  }
  return filled.append(text);
}

}  // namespace

void RigReport::Add(const FindingKind& kind, const std::string& name,
                    const std::vector<std::string>& values) {
  Finding finding{std::string(kind.code),  kind.severity,        kind.subject, {},
                  Fill(kind.text, values), std::string(kind.fix)};
  const auto [entry, isNew] = findingOf_.try_emplace(finding.code + "\n" + finding.text, findings.size());
  if (isNew) findings.push_back(std::move(finding));
  if (!name.empty() && named_.emplace(entry->second, name).second) {
    findings[entry->second].names.push_back(name);
  }
}

Severity RigReport::Worst() const {
  Severity worst = Severity::Note;
  for (const Finding& finding : findings) worst = std::max(worst, finding.severity);
  return worst;
}

void RigReport::SortFindings() {
  findingOf_.clear();
  named_.clear();
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding& a, const Finding& b) { return a.severity > b.severity; });
}

}  // namespace ts3d
