// SPDX-License-Identifier: MIT
#include "host/load_package.h"

#include "actor/load_actor.h"
#include "host/input_problem.h"
#include "terminal/exit_codes.h"

namespace cli {

void LoadPackage(const platform::fs::path& path, actor::Actor& actor, Messages& messages) {
  if (const auto problem = FindInputProblem(path, true)) throw Failure(problem->exitStatus, problem->text);
  actor::Findings findings;
  std::string error;
  if (!LoadActor(path.string(), actor::ReadLimits(), actor, findings, error)) {
    const std::string known = RecognisePackage(path);
    throw Failure(kUnreadable, known.empty() ? error : known);
  }
  for (const actor::Finding& finding : findings) {
    if (finding.severity == Severity::Warning) messages.Warning(actor::NameIn(finding), finding.text);
  }
}

}  // namespace cli
