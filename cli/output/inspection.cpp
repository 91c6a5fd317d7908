// SPDX-License-Identifier: MIT
#include "output/inspection.h"

#include <algorithm>

#include "actor/load_actor.h"
#include "host/input_problem.h"
#include "inspect/check_actor.h"
#include "terminal/exit_codes.h"

namespace cli {

Inspection Inspect(const std::string& path) {
  Inspection inspection;
  inspection.path = path;
  if (const auto problem = FindInputProblem(path, true)) {
    inspection.error = problem->text;
    inspection.exitStatus = problem->exitStatus;
    return inspection;
  }
  if (ReadPackage(path, actor::ReadLimits(), inspection.contents, inspection.error) &&
      BuildActor(inspection.contents, inspection.actor, inspection.findings, inspection.error)) {
    CheckActor(inspection.contents, inspection.actor, inspection.findings);
  } else {
    const std::string known = RecognisePackage(path);
    if (!known.empty()) inspection.error = known;
    inspection.exitStatus = kUnreadable;
  }
  return inspection;
}

size_t CountProblems(const actor::Findings& findings) {
  return static_cast<size_t>(std::count_if(
      findings.begin(), findings.end(),
      [](const actor::Finding& finding) { return finding.severity == actor::Severity::Warning; }));
}

}  // namespace cli
