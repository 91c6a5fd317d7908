// SPDX-License-Identifier: MIT
#include "check_command.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "check/check_rig.h"
#include "check/finding_kinds.h"
#include "check_output.h"
#include "check_textures.h"
#include "host_paths.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

/// What "fbx2czp check" was asked for.
struct CheckCommandOptions {
  std::vector<std::string> models;
  std::vector<std::string> excludedNames;
  bool json = false;
  bool quiet = false;
};

ts3d::RigReport CheckModel(const std::string& name, const CheckCommandOptions& options) {
  const fs::path model = fs::absolute(name);
  ts3d::RigReport report;
  if (model.string().find('\\') != std::string::npos) {
    report.Add(ts3d::findings::kNotLoaded, {}, {"its path has a backslash"});
    return report;
  }
  report = ts3d::CheckRig(ConverterPath(model), {options.excludedNames});
  AddTextureFindings(model, report);
  report.SortFindings();
  return report;
}

int RunCheck(const CheckCommandOptions& options) {
  std::vector<CheckedModel> models;
  ts3d::Severity worst = ts3d::Severity::Note;
  for (const std::string& name : options.models) {
    CheckedModel model{name, CheckModel(name, options)};
    worst = std::max(worst, model.report.Worst());
    if (options.json) {
      models.push_back(std::move(model));
    } else {
      PrintReport(model, options.quiet);
    }
  }
  if (options.json) std::fputs(ReportsAsJson(models).c_str(), stdout);
  return static_cast<int>(worst);
}

}  // namespace

void AddCheckCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<CheckCommandOptions>();
  CLI::App& check = AddCommand(app, "check", "Tell what is wrong with models, without converting them", run,
                               [options] { return RunCheck(*options); });
  check.add_option("MODEL", options->models, "FBX files, binary or ASCII")->required();
  Repeatable(check.add_option("--exclude", options->excludedNames,
                              "Mesh or material that will be left out; repeat for more"));
  check.add_flag("--json", options->json, "Print the reports as JSON");
  check.add_flag("-q,--quiet", options->quiet, "Show warnings and worse only");
  check.footer(
      "Examples:\n"
      "  fbx2czp check hero.fbx\n"
      "      tells what hero.czp would hold and what is wrong with the rig\n"
      "  fbx2czp check --json models/*.fbx > report.json\n"
      "\nExit codes:\n"
      "    0  no problems, notes at most\n"
      "    1  warnings: something will look wrong\n"
      "    2  a model cannot be loaded or has no mesh\n"
      "   64  wrong command line\n");
}

}  // namespace cli
