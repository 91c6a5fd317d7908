// SPDX-License-Identifier: MIT
#include "commands/repack_command.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "actor/package_contents.h"
#include "host/find_packages.h"
#include "host/input_problem.h"
#include "host/source_date.h"
#include "package/repack.h"
#include "platform/file_system.h"
#include "platform/replacement.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace cli {
namespace fs = platform::fs;
namespace {

/// Which members of the package stay: those that no later one supersedes.
/// @throws Failure when it is no sound archive or beyond the limits of all commands
std::vector<bool> FindKeptMembers(const std::string& path) {
  std::string error;
  platform::MappedFile bytes;
  actor::PackageContents contents;
  actor::ReadLimits limits;
  limits.keepsBytes = false;
  if (const auto problem = FindInputProblem(path)) throw Failure(problem->exitStatus, problem->text);
  if (!bytes.Open(path, error)) throw Failure(kUnreadable, error);
  if (bytes.Bytes().size() > limits.packageBytes) throw Failure(kUnreadable, "it is too large");
  if (!actor::ReadPackageBytes(bytes.Bytes(), limits, contents, error)) {
    const std::string known = RecognisePackage(path);
    throw Failure(kUnreadable, known.empty() ? error : known);
  }
  std::vector<bool> keeps;
  for (const actor::Member& member : contents.members) {
    if (!member.sound && !member.superseded) throw Failure(kUnreadable, "\"" + member.name + "\" is damaged");
    keeps.push_back(!member.superseded);
  }
  return keeps;
}

int RunRepack(const std::string& path, std::optional<int> level) {
  try {
    const std::vector<bool> keeps = FindKeptMembers(path);
    const auto before = fs::file_size(path);
    platform::Replacement file(path, platform::Links::Follow);
    if (!file.Create("wb")) throw std::runtime_error("the new package cannot be written");
    ts3d::RepackPackage(path, keeps, file.Path(), {level, SourceDate()});
    const auto dropped = static_cast<size_t>(std::count(keeps.begin(), keeps.end(), false));
    if (!file.TakePlace()) throw std::runtime_error("the new package cannot be put into its place");
    std::printf("%s: %zu superseded members dropped, %ju bytes instead of %ju\n", Printable(path).c_str(),
                dropped, static_cast<uintmax_t>(fs::file_size(path)), static_cast<uintmax_t>(before));
    return kSuccess;
  } catch (const Failure& failure) {
    PrintMessage(path, Severity::Error, failure.what());
    return failure.exitStatus;
  } catch (const std::exception& error) {
    PrintMessage(path, Severity::Error, error.what());
    return kNotWritten;
  }
}

int RepackAll(const std::vector<std::string>& packages, std::optional<int> level) {
  ExitStatus all;
  for (const PackageInput& input : FindPackages(packages)) all.Add(RunRepack(input.name, level));
  return all.Get();
}

}  // namespace

void AddRepackCommand(CLI::App& app, RunCommand& run) {
  struct Options {
    std::vector<std::string> packages;
    bool strict = false;       ///< there are no warnings
    std::optional<int> level;  ///< none: members stay as they are packed
  };
  const auto options = std::make_shared<Options>();
  CLI::App& repack = AddCommand(app, "repack", "Drop superseded members from a package", run,
                                [options] { return RepackAll(options->packages, options->level); });
  repack.add_option("PACKAGE", options->packages, "Packages (.czp) and folders of them")
      ->required()
      ->type_name("");
  AddStrict(repack, options->strict);
  AddPackLevel(repack, options->level);
  SetFooter(repack,
            "  fbx2czp repack hero.czp\n"
            "      drops the documents that earlier changes left in the package\n"
            "  fbx2czp repack hero.czp --pack small\n"
            "      also deflates all members again, as small as they get\n");
}

}  // namespace cli
