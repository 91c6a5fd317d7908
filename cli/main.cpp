// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "convert_command.h"
#include "exit_codes.h"
#include "finish_command.h"
#include "preview_command.h"
#include "repack_command.h"

namespace {

int Run(int argc, char** argv) {
  CLI::App app("Converts rigged, skinned FBX characters into actor packages (.czp) for Tessaly 3D Studio.",
               "fbx2czp");
  app.set_version_flag("--version", std::string("fbx2czp ") + FBX_TO_TS3D_VERSION);
  app.require_subcommand(1);
  app.footer("'fbx2czp COMMAND --help' tells more, with examples.");
  cli::RunCommand run;
  cli::AddConvertCommand(app, run);
  cli::AddFinishCommand(app, run);
  cli::AddPreviewCommand(app, run);
  cli::AddRepackCommand(app, run);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::fprintf(stderr, "fbx2czp: error: %s. Try 'fbx2czp --help'.\n", error.what());
    return cli::kUsageError;
  }
  return run();
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
