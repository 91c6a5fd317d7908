// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "convert_command.h"
#include "exit_codes.h"
#include "fbx_to_ts3d.h"
#include "finish_command.h"
#include "repack_command.h"

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  fbx2czp convert hero.fbx\n"
    "      writes hero.czp, and hero.xfg for later final settings, beside the model\n"
    "  fbx2czp convert \"Actor (Female).fbx\" --rotation-y 180 --output packages\n"
    "      the file name makes it a female actor; nothing is written beside the model\n"
    "  fbx2czp convert hero.fbx --double-sided Hair --exclude Helper --rename L_femur=\"left femur\"\n"
    "  fbx2czp convert hero.fbx --finish-settings hero.json\n"
    "      converts and applies final settings, so that bone renames know the skeleton\n"
    "  fbx2czp finish hero.fbx --scale 95 --mesh Body=Skin --switch-on Hat=Cap\n"
    "      changes the document of an earlier conversion and adds it to its package again\n"
    "  fbx2czp repack hero.czp\n"
    "      drops the documents that earlier changes left in the package\n"
    "\n"
    "Settings file (JSON), every part optional:\n"
    "  {\"scale\": 95, \"rotation\": {\"x\": 0, \"y\": 180}, \"renames\": {\"L_femur\": \"left femur\"},\n"
    "   \"meshes\": {\"Body\": \"Skin\"}, \"switch_on\": {\"Hat\": \"Cap\"}, \"switch_off\": {\"Coat\": "
    "\"Coat\"}}\n"
    "\n"
    "Exit codes:\n";

/// The converter separates list entries by "|", so none can hold one.
std::string CheckEntry(const std::string& entry) {
  return entry.find('|') == std::string::npos ? std::string() : "\"" + entry + "\" holds a \"|\"";
}

std::string CheckPair(const std::string& entry) {
  return entry.find('=') == std::string::npos ? "\"" + entry + "\" holds no \"=\"" : CheckEntry(entry);
}

/// An option that may be given more than once, one value each time.
CLI::Option* Repeatable(CLI::Option* option) { return option->allow_extra_args(false); }

const CLI::Validator& Entry() {
  static const CLI::Validator validator(CheckEntry, "NAME");
  return validator;
}

CLI::Validator Pair(const char* form) { return {CheckPair, form}; }

void AddVerbosity(CLI::App& command, cli::Verbosity& verbosity) {
  auto* verbose = command.add_flag_callback(
      "-v,--verbose", [&] { verbosity = cli::Verbosity::Verbose; }, "Show every status line");
  command
      .add_flag_callback(
          "-q,--quiet", [&] { verbosity = cli::Verbosity::Quiet; }, "Show problems only")
      ->excludes(verbose);
}

CLI::App* AddConvert(CLI::App& app, cli::ConvertOptions& options) {
  CLI::App& convert = *app.add_subcommand("convert", "Convert models into packages");
  convert.add_option("MODEL", options.models, "FBX files, binary or ASCII")->required();
  convert.add_option("-o,--output", options.outputFolder,
                     "Folder for the package and its .xfg document (default: beside each model)");
  convert.add_option("--rotation-y", options.rotationY,
                     "Turn about the up axis in degrees, for the document (0)");
  convert.add_option("--rotation-x", options.rotationX,
                     "Turn about the side axis in degrees, for the document (0)");
  Repeatable(convert.add_option("--rename", options.boneRenames, "Product name of a bone; repeat for more"))
      ->check(Pair("OLD=NEW"));
  convert
      .add_option(
          "--mesh-mode", options.meshMode,
          "Which meshes get inward normals. Without --mesh: 1 all, 0 and 2 none. With --mesh: 2 those, "
          "0 and 1 all others (0)")
      ->check(CLI::Range(0, 2));
  Repeatable(convert.add_option("--mesh", options.meshes, "Mesh that --mesh-mode is about; repeat for more"))
      ->check(Entry());
  Repeatable(convert.add_option("--double-sided", options.doubleSidedMeshes,
                                "Mesh to draw from both sides; repeat for more"))
      ->check(Entry());
  Repeatable(convert.add_option("--exclude", options.excludedNames,
                                "Mesh or material to leave out; repeat for more"));
  convert.add_option("--finish-settings", options.finishSettings,
                     "JSON file with final settings to apply as well");
  AddVerbosity(convert, options.verbosity);
  return &convert;
}

CLI::App* AddFinish(CLI::App& app, cli::FinishOptions& options) {
  CLI::App& finish = *app.add_subcommand("finish", "Apply final settings to a converted model");
  cli::FinishSettings& settings = options.settings;
  finish
      .add_option("MODEL", options.model, "The model that was converted; its .xfg and .czp files are changed")
      ->required();
  finish.add_option("--settings", options.settingsFile, "JSON file with the settings; the options add to it");
  finish.add_option("--scale", settings.scalePercent, "Size in per cent (100)");
  finish.add_option("--rotation-y", settings.rotationY, "Turn about the up axis in degrees (0)");
  finish.add_option("--rotation-x", settings.rotationX, "Turn about the side axis in degrees (0)");
  Repeatable(finish.add_option("--rename", settings.boneRenames, "Product name of a bone; repeat for more"))
      ->check(Pair("OLD=NEW"));
  Repeatable(finish.add_option("--mesh", settings.meshes, "Friendly name of a mesh; repeat for more"))
      ->check(Pair("NAME=FRIENDLY"));
  const auto addSwitch = [&](const char* name, const char* help,
                             void (*add)(cli::FinishSettings&, const std::string&)) {
    Repeatable(finish.add_option_function<std::vector<std::string>>(
                   name,
                   [&settings, add](const std::vector<std::string>& entries) {
                     for (const std::string& entry : entries) add(settings, entry);
                   },
                   help))
        ->check(Pair("NAME=FRIENDLY"));
  };
  addSwitch("--switch-on", "Mesh with a switch, shown at first; repeat for more", cli::AddSwitchOn);
  addSwitch("--switch-off", "Mesh with a switch, hidden at first; repeat for more", cli::AddSwitchOff);
  AddVerbosity(finish, options.verbosity);
  return &finish;
}

int Run(int argc, char** argv) {
  CLI::App app("Converts rigged, skinned FBX characters into actor packages (.czp) for Tessaly 3D Studio.",
               "fbx2czp");
  app.set_version_flag("--version", std::string("fbx2czp ") + FBX_TO_TS3D_VERSION);
  app.require_subcommand(1);
  cli::ConvertOptions convertOptions;
  cli::FinishOptions finishOptions;
  std::string package;
  CLI::App* convert = AddConvert(app, convertOptions);
  CLI::App* finish = AddFinish(app, finishOptions);
  CLI::App* repack = app.add_subcommand("repack", "Drop superseded members from a package");
  repack->add_option("PACKAGE", package, "The .czp file")->required();
  for (CLI::App* described : {&app, convert, finish, repack})
    described->footer(kExamples + cli::ExitCodeTable());
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::fprintf(stderr, "fbx2czp: error: %s. Try 'fbx2czp --help'.\n", error.what());
    return cli::kUsageError;
  }
  if (repack->parsed()) return cli::RunRepack(package);
  return finish->parsed() ? cli::RunFinish(finishOptions) : cli::RunConvert(convertOptions);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "fbx2czp: error: %s\n", error.what());
    return cli::kUsageError;
  }
}
