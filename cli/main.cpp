// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "convert_command.h"
#include "exit_codes.h"
#include "fbx_to_ts3d.h"

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  fbx2czp convert hero.fbx\n"
    "      writes hero.czp, and hero.xfg for later final settings, beside the model\n"
    "  fbx2czp convert \"Actor (Female).fbx\" --rotation-y 180 --output packages\n"
    "      the file name makes it a female actor; nothing is written beside the model\n"
    "  fbx2czp convert hero.fbx --double-sided Hair --exclude Helper --rename L_femur=\"left femur\"\n"
    "\n"
    "Exit codes:\n";

/// The converter separates list entries by "|", so none can hold one.
std::string CheckEntry(const std::string& entry) {
  return entry.find('|') == std::string::npos ? std::string() : "\"" + entry + "\" holds a \"|\"";
}

std::string CheckRename(const std::string& entry) {
  return entry.find('=') == std::string::npos ? "\"" + entry + "\" is not of the form OLD=NEW"
                                              : CheckEntry(entry);
}

void AddConvertOptions(CLI::App& convert, cli::ConvertOptions& options) {
  convert.add_option("MODEL", options.models, "FBX files, 7.x, binary or ASCII")->required();
  convert.add_option("-o,--output", options.outputFolder,
                     "Folder for the package and its .xfg document (default: beside each model)");
  convert.add_option("--rotation-y", options.rotationY,
                     "Turn about the up axis in degrees, for the document (0)");
  convert.add_option("--rotation-x", options.rotationX,
                     "Turn about the side axis in degrees, for the document (0)");
  const CLI::Validator entry(CheckEntry, "NAME"), rename(CheckRename, "OLD=NEW");
  convert.add_option("--rename", options.boneRenames, "Product name of a bone; repeat for more")
      ->check(rename)
      ->allow_extra_args(false);
  convert
      .add_option(
          "--mesh-mode", options.meshMode,
          "Which meshes get inward normals. Without --mesh: 1 all, 0 and 2 none. With --mesh: 2 those, "
          "0 and 1 all others (0)")
      ->check(CLI::Range(0, 2));
  convert.add_option("--mesh", options.meshes, "Mesh that --mesh-mode is about; repeat for more")
      ->check(entry)
      ->allow_extra_args(false);
  convert
      .add_option("--double-sided", options.doubleSidedMeshes,
                  "Mesh to draw from both sides; repeat for more")
      ->check(entry)
      ->allow_extra_args(false);
  convert.add_option("--exclude", options.excludedNames, "Mesh or material to leave out; repeat for more")
      ->allow_extra_args(false);
  auto* verbose = convert.add_flag_callback(
      "-v,--verbose", [&] { options.verbosity = cli::Verbosity::Verbose; }, "Show every status line");
  convert
      .add_flag_callback(
          "-q,--quiet", [&] { options.verbosity = cli::Verbosity::Quiet; }, "Show problems only")
      ->excludes(verbose);
}

int Run(int argc, char** argv) {
  CLI::App app("Converts rigged, skinned FBX characters into actor packages (.czp) for Tessaly 3D Studio.",
               "fbx2czp");
  app.set_version_flag("--version", std::string("fbx2czp ") + FBX_TO_TS3D_VERSION);
  app.require_subcommand(1);
  cli::ConvertOptions convertOptions;
  CLI::App* convert = app.add_subcommand("convert", "Convert models into packages");
  AddConvertOptions(*convert, convertOptions);
  for (CLI::App* described : {&app, convert}) described->footer(kExamples + cli::ExitCodeTable());
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::fprintf(stderr, "fbx2czp: error: %s. Try 'fbx2czp --help'.\n", error.what());
    return cli::kUsageError;
  }
  return cli::RunConvert(convertOptions);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "fbx2czp: error: %s\n", error.what());
    return FBX_TO_TS3D_LOAD_FAILED;
  }
}
