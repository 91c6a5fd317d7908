// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/finding.h"

namespace actor {

using ts3d::Finding;
using ts3d::Severity;
using ts3d::Subject;
using Findings = std::vector<Finding>;

/// The usual advice.
inline constexpr const char* kConvertAgain = "convert the model again";

/// Adds a finding about the member or bone `name`; about the whole package when that is empty.
/// @param text  what is the matter, without the name
inline void AddFinding(Findings& findings, Severity severity, std::string code, Subject subject,
                       std::string name, std::string text, std::string fix) {
  Finding finding{std::move(code), severity, Subject::File, {}, std::move(text), std::move(fix)};
  if (!name.empty()) {
    finding.subject = subject;
    finding.names.push_back(std::move(name));
  }
  findings.push_back(std::move(finding));
}

/// The same of what is not as it should be.
inline void AddProblem(Findings& findings, std::string code, Subject subject, std::string name,
                       std::string text, std::string fix) {
  AddFinding(findings, Severity::Warning, std::move(code), subject, std::move(name), std::move(text),
             std::move(fix));
}

/// The same of what is worth knowing, although nothing is wrong.
inline void AddNote(Findings& findings, std::string code, Subject subject, std::string name, std::string text,
                    std::string fix = {}) {
  AddFinding(findings, Severity::Note, std::move(code), subject, std::move(name), std::move(text),
             std::move(fix));
}

/// The member or bone that it is about; empty for the whole package.
inline std::string NameIn(const Finding& finding) {
  return finding.names.empty() ? std::string() : finding.names.front();
}

/// `"hat.cmf" is empty -> convert the model again`.
inline std::string InOneLine(const Finding& finding) {
  return (finding.names.empty() ? "" : "\"" + NameIn(finding) + "\" ") + finding.text +
         (finding.fix.empty() ? "" : " -> " + finding.fix);
}

}  // namespace actor
