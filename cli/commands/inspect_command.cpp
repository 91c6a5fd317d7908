// SPDX-License-Identifier: MIT
#include "commands/inspect_command.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "host/find_packages.h"
#include "output/inspection.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace cli {
namespace {

struct InspectOptions {
  std::vector<std::string> paths;
  bool json = false;
  bool isStrict = false;  ///< is always
};

int StatusOf(const Inspection& inspection) {
  if (!inspection.error.empty()) return inspection.exitStatus;
  return CountProblems(inspection.findings) > 0 ? kWarnings : kSuccess;
}

void PrintTotals(const std::vector<int>& statuses) {
  const auto count = [&](int least, int most) {
    return std::count_if(statuses.begin(), statuses.end(),
                         [&](int status) { return status >= least && status <= most; });
  };
  std::printf("\n%zu packages: %td sound, %td with problems, %td that cannot be read\n", statuses.size(),
              count(kSuccess, kSuccess), count(kWarnings, kWarnings), count(kWarnings + 1, 255));
}

int RunInspect(const InspectOptions& options) {
  ExitStatus all;
  std::vector<int> statuses;
  std::vector<Inspection> inspections;
  for (const PackageInput& input : FindPackages(options.paths)) {
    Inspection inspection = Inspect(input.name);
    statuses.push_back(StatusOf(inspection));
    all.Add(statuses.back());
    if (!options.json && inspection.error.empty()) {
      if (statuses.size() > 1) std::fputs("\n", stdout);
      std::fputs(InspectionAsText(inspection).c_str(), stdout);
    }
    if (!inspection.error.empty()) PrintMessage(input.name, Severity::Error, inspection.error);
    if (!options.json) continue;
    // Of the files themselves nothing is told.
    for (actor::Member& member : inspection.contents.members) member.bytes = {};
    inspections.push_back(std::move(inspection));
  }
  if (options.json) {
    std::fputs(InspectionsAsJson(inspections).c_str(), stdout);
  } else if (statuses.size() > 1) {
    PrintTotals(statuses);
  }
  return all.Get();
}

}  // namespace

void AddInspectCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<InspectOptions>();
  CLI::App& inspect = AddCommand(app, "inspect", "Show what a package holds and what is wrong with it", run,
                                 [options] { return RunInspect(*options); });
  inspect
      .add_option("PACKAGE", options->paths,
                  "Packages (.czp), folders of them, and folders with the files of one")
      ->required()
      ->type_name("");
  inspect.add_flag("--json", options->json, "Print JSON for programs instead of text");
  AddStrict(inspect, options->isStrict);
  SetFooter(inspect,
            "  fbx2czp inspect hero.czp\n"
            "      lists files, skeleton, meshes, materials and pictures, then what is wrong and what to do\n"
            "  fbx2czp inspect hero.czp --json\n"
            "      the same for programs\n"
            "  fbx2czp inspect packages/\n"
            "      all packages below a folder, with totals at the end\n");
}

}  // namespace cli
