// SPDX-License-Identifier: MIT
#include "commands/inspect_command.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "actor/load_actor.h"
#include "host/input_problem.h"
#include "inspect/check_actor.h"
#include "output/exit_codes.h"
#include "output/inspection.h"
#include "output/terminal.h"

namespace cli {
namespace {

struct InspectOptions {
  std::string path;
  bool json = false;
  bool isStrict = false;  ///< is always
};

int RunInspect(const InspectOptions& options) {
  const Inspection inspection = Inspect(options.path);
  if (options.json) {
    std::fputs(InspectionsAsJson({inspection}).c_str(), stdout);
  } else if (inspection.error.empty()) {
    std::fputs(InspectionAsText(inspection).c_str(), stdout);
  }
  if (!inspection.error.empty()) {
    PrintMessage(options.path, Severity::Error, inspection.error);
    return inspection.exitStatus;
  }
  return CountProblems(inspection.findings) > 0 ? kWarnings : kSuccess;
}

}  // namespace

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
      [](const actor::Finding& finding) { return finding.severity == actor::Severity::Problem; }));
}

void AddInspectCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<InspectOptions>();
  CLI::App& inspect = AddCommand(app, "inspect", "Show what a package holds and what is wrong with it", run,
                                 [options] { return RunInspect(*options); });
  inspect.add_option("PACKAGE", options->path, "The .czp file, or a folder with the files of one")
      ->required();
  inspect.add_flag("--json", options->json, "Print JSON for programs instead of text");
  AddStrict(inspect, options->isStrict);
  SetFooter(inspect,
            "  fbx2czp inspect hero.czp\n"
            "      lists files, skeleton, meshes, materials and pictures, then what is wrong and what to do\n"
            "  fbx2czp inspect hero.czp --json\n"
            "      the same for programs\n");
}

}  // namespace cli
