// SPDX-License-Identifier: MIT
#include "commands/inspect_command.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "actor/load_actor.h"
#include "inspect/check_actor.h"
#include "output/inspection.h"
#include "output/terminal.h"

namespace cli {
namespace {

constexpr int kClean = 0, kProblems = 1, kUnreadable = 2;

struct InspectOptions {
  std::string path;
  bool json = false;
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
    return kUnreadable;
  }
  return CountProblems(inspection.findings) > 0 ? kProblems : kClean;
}

}  // namespace

Inspection Inspect(const std::string& path) {
  Inspection inspection;
  inspection.path = path;
  if (ReadPackage(path, actor::ReadLimits(), inspection.contents, inspection.error) &&
      BuildActor(inspection.contents, inspection.actor, inspection.findings, inspection.error)) {
    CheckActor(inspection.contents, inspection.actor, inspection.findings);
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
  inspect.footer(
      "Examples:\n"
      "  fbx2czp inspect hero.czp\n"
      "      lists files, skeleton, meshes, materials and pictures, then what is wrong and what to do\n"
      "  fbx2czp inspect hero.czp --json\n"
      "      the same for programs\n"
      "\nExit codes:\n"
      "    0  nothing is wrong\n"
      "    1  something is wrong\n"
      "    2  the package cannot be read\n"
      "   64  wrong command line\n");
}

}  // namespace cli
