// SPDX-License-Identifier: MIT
#include "commands/finish_command.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#include "actor/skeleton_reader.h"
#include "convert/job_host.h"
#include "driver/converted_document.h"
#include "finish/apply_finish_settings.h"
#include "finish/finish_history.h"
#include "finish/finish_names.h"
#include "host/host_paths.h"
#include "host/replace_files.h"
#include "host/source_date.h"
#include "output/inspection.h"
#include "package/read_member.h"
#include "platform/file_system.h"
#include "platform/files.h"
#include "results/unmatched_options.h"
#include "terminal/exit_codes.h"
#include "terminal/messages.h"
#include "terminal/status_printer.h"
#include "terminal/terminal.h"

namespace cli {
namespace fs = platform::fs;
namespace {

constexpr const char* kFinishExamples =
    "  fbx2czp finish hero.fbx --scale 95 --mesh Body=Skin --switch-on Hat=Cap\n"
    "      changes the document of an earlier conversion and adds it to its package again; all other\n"
    "      meshes and bones keep their names, and what an earlier finish has set stays\n"
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
  bool strict = false;
  Verbosity verbosity = Verbosity::Normal;
};

/// The file's settings, with those of the command line behind or in place of them.
FinishSettings Combine(const FinishOptions& options) {
  FinishSettings settings;
  if (!options.settingsFile.empty()) ReadFinishSettings(options.settingsFile, settings);
  AddSettings(options.settings, settings);
  if (settings.scalePercent) CheckScale(*settings.scalePercent);
  return settings;
}

/// All bones of the package's skeleton; none when it has none that can be read.
std::vector<std::string> BoneNames(const fs::path& package) {
  std::vector<std::string> names;
  std::error_code unknown;
  if (!fs::is_regular_file(package, unknown)) return names;
  const std::vector<std::string> files = ts3d::ReadMembers(package.string(), "skeleton.csf");
  actor::Skeleton skeleton;
  std::string error;
  if (files.empty() || !actor::ReadSkeleton(files.back(), skeleton, error)) return names;
  for (const actor::Bone& bone : skeleton.bones) names.push_back(bone.name);
  return names;
}

/// Keeps a document that somebody has changed by hand: the new one does not come from it.
void KeepEditedDocument(const fs::path& document, const FinishHistory& history, Messages& messages) {
  platform::MappedFile file;
  std::string error;
  if (!history.converted || !file.Open(document.string(), error)) return;
  const std::string text = ts3d::WithLineFeeds(std::string(file.Bytes()));
  if (text == history.latest || text == *history.converted) return;
  const std::string kept = document.filename().string() + ".before";
  ReplaceFiles(document.parent_path(), {{kept, text}});
  messages.Warning(document.filename().string(),
                   "this is not the document in the package; final settings start from the document as "
                   "converted, and this one is kept as " +
                       kept);
}

/// Settings that hold: those of earlier runs and, with the last word, those of this one.
FinishSettings Merge(const FinishSettings& given, const FinishHistory& history, const fs::path& package,
                     const std::string& name, Messages& messages) {
  FinishSettings settings = history.settings;
  AddSettings(given, settings);
  if (!history.converted) return settings;
  for (const UnmatchedOption& entry : ResolveNames(settings, *history.converted, BoneNames(package)))
    messages.Warning(name, DescribeUnmatched(entry, entry.nearest));
  return settings;
}

/// Tells what "inspect" would find to be wrong.
void LookAtResult(const fs::path& package, const std::string& name, Messages& messages) {
  const Inspection inspection = Inspect(package.string());
  if (!inspection.error.empty()) return messages.Warning(name, inspection.error);
  for (const actor::Finding& finding : inspection.findings) {
    if (finding.severity == Severity::Warning) messages.Warning(name, actor::InOneLine(finding));
  }
}

/// @param model  as the user gave it
void RequireConversion(const std::string& model, const fs::path& package, const fs::path& document) {
  std::error_code unknown;
  if (fs::exists(package, unknown) || fs::exists(document, unknown)) return;
  throw Failure(kNoInput,
                model + ": there is no " + package.filename().string() +
                    " beside it; convert the model first, and name it here as it lies beside its package");
}

int RunFinish(const FinishOptions& options) {
  const FinishSettings given = Combine(options);
  const fs::path model = WithExtension(fs::absolute(options.model), "fbx");
  const fs::path package = WithExtension(model, "czp"), document = WithExtension(model, "xfg");
  const std::string name = WithExtension(options.model, "czp").string();
  RequireConversion(options.model, package, document);
  Messages messages;
  const FinishHistory history = ReadFinishHistory(package, document.filename().string());
  const FinishSettings settings = Merge(given, history, package, name, messages);
  KeepEditedDocument(document, history, messages);
  StatusPrinter printer(options.verbosity, 1);
  JobHost host;
  host.onStatus = [&](const ts3d::StatusLine& line) { printer.Print(options.model, line); };
  ts3d::ConversionJob job;
  job.settings.packLevel = options.packLevel;
  job.settings.memberDate = SourceDate();
  host.Attach(job);
  job.actorType = ts3d::ActorTypeOf(history.latest);
  // The converter deletes the packed document from the current directory; from here it cannot, so that it
  // stays beside the package for the next change.
  const TemporaryFolder nowhere;
  const CurrentFolder current(nowhere.Path());
  errno = 0;
  const int code = ApplyFinishSettings(model.string(), settings, history.converted, job);
  if (code != 0) {
    const bool isFull = platform::IsDiskFull(errno) || platform::IsDiskFull(job.files.writeError);
    PrintMessage(options.model, Severity::Error,
                 (isFull ? "the disk is full: " : "") + std::string(DescribeExitCode(code)));
    return code;
  }
  LookAtResult(package, name, messages);
  if (options.verbosity != Verbosity::Quiet) std::printf("%s: updated\n", Printable(name).c_str());
  return options.strict && messages.Warnings() > 0 ? kWarnings : kSuccess;
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
  finish.add_option("--scale", settings.scalePercent, "Size in per cent (as it is; 100 at first)")
      ->type_name("PERCENT");
  finish.add_option("--rotation-y", settings.rotationY, "Turn about the up axis in degrees (as it is)")
      ->type_name("DEGREES");
  finish.add_option("--rotation-x", settings.rotationX, "Turn about the side axis in degrees (as it is)")
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
  AddStrict(finish, options->strict);
  AddVerbosity(finish, options->verbosity);
  SetFooter(finish, kFinishExamples);
}

}  // namespace cli
