// SPDX-License-Identifier: MIT
#include "finish_command.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "exit_codes.h"
#include "finish_settings.h"
#include "host_paths.h"
#include "job_host.h"
#include "status_printer.h"
#include "terminal.h"

namespace cli {
namespace {

constexpr const char* kFinishExamples =
    "  fbx2czp finish hero.fbx --scale 95 --mesh Body=Skin --switch-on Hat=Cap\n"
    "      changes the document of an earlier conversion and adds it to its package again\n"
    "  fbx2czp finish hero.fbx --settings hero.json\n"
    "\n"
    "Settings file (JSON), every part optional, others are refused:\n"
    "  {\"scale\": 95, \"rotation\": {\"x\": 0, \"y\": 180}, \"renames\": {\"L_femur\": \"left femur\"},\n"
    "   \"meshes\": {\"Body\": \"Skin\"}, \"switch_on\": {\"Hat\": \"Cap\"}, \"switch_off\": {\"Coat\": "
    "\"Coat\"}}\n";

/// What "fbx2czp finish" was asked for.
struct FinishOptions {
  std::string model;
  std::string settingsFile;  ///< JSON, or empty; what the command line says comes behind it
  FinishSettings settings;
  std::optional<int> packLevel = ts3d::kDefaultPackLevel;
  Verbosity verbosity = Verbosity::Normal;
};

void Append(std::vector<std::string>& to, const std::vector<std::string>& from) {
  to.insert(to.end(), from.begin(), from.end());
}

/// The file's settings, with those of the command line behind or in place of them.
FinishSettings Combine(const FinishOptions& options) {
  FinishSettings settings;
  if (!options.settingsFile.empty()) ReadFinishSettings(options.settingsFile, settings);
  const FinishSettings& given = options.settings;
  if (given.scalePercent != FinishSettings().scalePercent) settings.scalePercent = given.scalePercent;
  if (given.rotationX) settings.rotationX = given.rotationX;
  if (given.rotationY) settings.rotationY = given.rotationY;
  Append(settings.boneRenames, given.boneRenames);
  Append(settings.meshes, given.meshes);
  CheckScale(settings.scalePercent);
  return settings;
}

int RunFinish(const FinishOptions& options) {
  const FinishSettings settings = Combine(options);
  const std::filesystem::path model = std::filesystem::absolute(options.model);
  StatusPrinter printer(options.verbosity, 1);
  JobHost host;
  host.onStatus = [&](std::string_view line) { printer.Print(options.model, line); };
  ts3d::ConversionJob job;
  job.packLevel = options.packLevel;
  host.Attach(job);
  // The converter deletes the packed document from the current directory; from here it cannot, so that it
  // stays beside the package for the next change.
  const TemporaryFolder nowhere;
  const CurrentFolder current(nowhere.Path());
  const int code = ApplyFinishSettings(WithExtension(model, "fbx").string(), settings, job);
  if (code != 0) {
    PrintMessage(options.model, Severity::Error, DescribeExitCode(code));
  } else {
    std::printf("%s: updated\n", Printable(WithExtension(options.model, "czp").string()).c_str());
  }
  return code;
}

}  // namespace

void AddFinishCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<FinishOptions>();
  CLI::App& finish = AddCommand(app, "finish", "Apply final settings to a converted model", run,
                                [options] { return RunFinish(*options); });
  FinishSettings& settings = options->settings;
  finish
      .add_option("MODEL", options->model,
                  "The model that was converted; its .xfg and .czp files are changed")
      ->required()
      ->type_name("");
  finish
      .add_option("--settings", options->settingsFile, "JSON file with the settings; the options add to it")
      ->type_name("FILE");
  finish.add_option("--scale", settings.scalePercent, "Size in per cent (100)")->type_name("PERCENT");
  finish.add_option("--rotation-y", settings.rotationY, "Turn about the up axis in degrees (0)")
      ->type_name("DEGREES");
  finish.add_option("--rotation-x", settings.rotationX, "Turn about the side axis in degrees (0)")
      ->type_name("DEGREES");
  TakesPair(Repeatable(finish.add_option("--rename", settings.boneRenames,
                                         "Product name of a bone; repeat for more")),
            "OLD=NEW");
  TakesPair(
      Repeatable(finish.add_option("--mesh", settings.meshes, "Friendly name of a mesh; repeat for more")),
      "NAME=FRIENDLY");
  const auto addSwitch = [&](const char* name, const char* help,
                             void (*add)(FinishSettings&, const std::string&)) {
    const auto addAll = [&settings, add](const std::vector<std::string>& entries) {
      for (const std::string& entry : entries) add(settings, entry);
    };
    TakesPair(Repeatable(finish.add_option_function<std::vector<std::string>>(name, addAll, help)),
              "NAME=FRIENDLY");
  };
  addSwitch("--switch-on", "Mesh with a switch, shown at first; repeat for more", AddSwitchOn);
  addSwitch("--switch-off", "Mesh with a switch, hidden at first; repeat for more", AddSwitchOff);
  AddPackLevel(finish, options->packLevel);
  AddVerbosity(finish, options->verbosity);
  SetFooter(finish, kFinishExamples);
}

}  // namespace cli
