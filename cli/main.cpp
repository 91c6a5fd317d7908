// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "completion_command.h"
#include "convert_command.h"
#include "exit_codes.h"
#include "export_command.h"
#include "finish_command.h"
#include "inspect_command.h"
#include "manual_command.h"
#include "preview_command.h"
#include "repack_command.h"
#include "terminal.h"

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
  cli::AddInspectCommand(app, run);
  cli::AddPreviewCommand(app, run);
  cli::AddExportCommand(app, run);
  cli::AddRepackCommand(app, run);
  cli::AddCompletionCommand(app, run);
  cli::AddManualCommand(app, run);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    cli::PrintMessage("", cli::Severity::Error, std::string(error.what()) + ". Try 'fbx2czp --help'.");
    return cli::kUsageError;
  }
  return run();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    cli::PrintMessage("", cli::Severity::Error, error.what());
    return cli::kUsageError;
  }
}
