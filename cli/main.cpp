// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "command_line/meant_command.h"
#include "commands/check_command.h"
#include "commands/completion_command.h"
#include "commands/convert_command.h"
#include "commands/diff_command.h"
#include "commands/export_command.h"
#include "commands/finish_command.h"
#include "commands/inspect_command.h"
#include "commands/manual_command.h"
#include "commands/preview_command.h"
#include "commands/prove_command.h"
#include "commands/repack_command.h"
#include "commands/settings_command.h"
#include "host/interrupt.h"
#include "output/build_info.h"
#include "platform/desktop.h"
#include "platform/heap.h"
#include "platform/process.h"
#include "platform/unfinished.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace {

struct Command {
  std::string_view name;
  void (*add)(CLI::App& app, cli::RunCommand& run);
};
constexpr Command kCommands[] = {
    {"convert", cli::AddConvertCommand},       {"check", cli::AddCheckCommand},
    {"finish", cli::AddFinishCommand},         {"inspect", cli::AddInspectCommand},
    {"preview", cli::AddPreviewCommand},       {"prove", cli::AddProveCommand},
    {"export", cli::AddExportCommand},         {"diff", cli::AddDiffCommand},
    {"repack", cli::AddRepackCommand},         {"settings", cli::AddSettingsCommand},
    {"completion", cli::AddCompletionCommand}, {"manual", cli::AddManualCommand}};

/// Adds the commands that `first`, the first word of the command line, may need. Setting up all of them takes
/// as long as a small mesh.
void AddCommands(std::string_view first, CLI::App& app, cli::RunCommand& run) {
  for (const Command& command : kCommands) {
    if (command.name == first && first != "completion" && first != "manual") return command.add(app, run);
  }
  for (const Command& command : kCommands) command.add(app, run);
}

std::vector<std::string> CommandNames() {
  std::vector<std::string> names;
  for (const Command& command : kCommands) names.emplace_back(command.name);
  return names;
}

int Run(const std::vector<std::string>& given) {
  CLI::App app("Converts rigged, skinned FBX characters into actor packages (.czp) for Tessaly 3D Studio.",
               "fbx2czp");
  bool json = false;
  app.add_flag("--json", json,
               "With --version: commit, page, kinds of pictures and libraries of this build as JSON");
  app.set_version_flag("-V,--version", [&app] {
    return app.count("--json") > 0 ? cli::VersionAsJson() : std::string("fbx2czp ") + FBX_TO_TS3D_VERSION;
  });
  app.require_subcommand(1);
  app.footer(
      "'fbx2czp COMMAND --help', or 'fbx2czp help COMMAND', tells more, with examples. Models and folders\n"
      "without a command are converted: fbx2czp hero.fbx. Packages are shown: fbx2czp hero.czp");
  cli::RunCommand run;
  const std::vector<std::string> words = cli::MeantCommandLine(given, CommandNames());
  AddCommands(words.front(), app, run);
  try {
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    const std::string mistake = cli::DescribeMistake(app, error, words, CommandNames());
    const bool isCommand = !app.get_subcommands().empty();
    cli::PrintMessage("", cli::Severity::Error,
                      mistake + ". Try 'fbx2czp " + (isCommand ? words.front() + " " : "") + "--help'.");
    return cli::kUsageError;
  }
  const cli::InterruptWatch watch;
  return run();
}

/// The exit status of a whole run.
int RunOrTell(const std::vector<std::string>& words) {
  try {
    const int status = Run(words);
    platform::RemoveUnfinished();
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

}  // namespace

int main(int argc, char** argv) {
  // Packing takes and frees the same 260 KB for each member, and meshes follow each other through arrays of like
  // sizes. Left to itself, the C library hands them back to the system every time, and fresh pages are dear.
  platform::KeepFreedMemory();
  platform::OpenStandardStreams();
  const std::vector<std::string> words = platform::CommandLineWords(argc, argv);
  if (cli::ChildProcess::Obey(words, cli::ObeyConvertOrder)) return cli::kSuccess;
  const int status = RunOrTell(words);
  if (platform::OwnsConsole()) {
    std::fputs("\nPress any key to close this window.", stderr);
    platform::WaitForKey();
  }
  return status;
}
