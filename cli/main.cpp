// SPDX-License-Identifier: MIT
#ifdef __linux__
#include <malloc.h>
#endif

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <new>
#include <string_view>

#include "commands/check_command.h"
#include "commands/completion_command.h"
#include "commands/convert_command.h"
#include "commands/export_command.h"
#include "commands/finish_command.h"
#include "commands/inspect_command.h"
#include "commands/manual_command.h"
#include "commands/preview_command.h"
#include "commands/repack_command.h"
#include "output/exit_codes.h"
#include "output/terminal.h"
#include "platform/process.h"

namespace {

/// Packing takes and frees the same 260 KB for each member, and meshes follow each other through arrays of
/// like sizes. Left to itself, the C library hands them back to the system every time, and fresh pages are
/// dear. Large arrays go back at once nevertheless.
void KeepFreedMemory() {
#ifdef __GLIBC__
  mallopt(M_TRIM_THRESHOLD, 32 << 20);
  mallopt(M_MMAP_THRESHOLD, 2 << 20);
#endif
}

struct Command {
  std::string_view name;
  void (*add)(CLI::App& app, cli::RunCommand& run);
};
constexpr Command kCommands[] = {
    {"convert", cli::AddConvertCommand}, {"check", cli::AddCheckCommand},
    {"finish", cli::AddFinishCommand},   {"inspect", cli::AddInspectCommand},
    {"preview", cli::AddPreviewCommand}, {"export", cli::AddExportCommand},
    {"repack", cli::AddRepackCommand},   {"completion", cli::AddCompletionCommand},
    {"manual", cli::AddManualCommand}};

/// Adds the commands that `first`, the first word of the command line, may need. Setting up all of them takes
/// as long as a small mesh.
void AddCommands(std::string_view first, CLI::App& app, cli::RunCommand& run) {
  for (const Command& command : kCommands) {
    if (command.name == first && first != "completion" && first != "manual") return command.add(app, run);
  }
  for (const Command& command : kCommands) command.add(app, run);
}

int Run(int argc, char** argv) {
  CLI::App app("Converts rigged, skinned FBX characters into actor packages (.czp) for Tessaly 3D Studio.",
               "fbx2czp");
  app.set_version_flag("--version", std::string("fbx2czp ") + FBX_TO_TS3D_VERSION);
  app.require_subcommand(1);
  app.footer("'fbx2czp COMMAND --help' tells more, with examples.");
  cli::RunCommand run;
  AddCommands(argc > 1 ? argv[1] : "", app, run);
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
  KeepFreedMemory();
  platform::OpenStandardStreams();
  try {
    const int status = Run(argc, argv);
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return status;
    cli::PrintMessage("", cli::Severity::Error, "the output cannot be written");
    return status == 0 ? cli::kOutputFailed : status;
  } catch (const cli::Failure& failure) {
    cli::PrintMessage("", cli::Severity::Error, failure.what());
    return failure.exitStatus;
  } catch (const std::bad_alloc&) {
    cli::PrintMessage("", cli::Severity::Error, "there is not enough memory for this");
    return cli::kCrashed;
  } catch (const std::exception& error) {
    cli::PrintMessage("", cli::Severity::Error, error.what());
    return cli::kUsageError;
  }
}
