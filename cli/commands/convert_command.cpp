// SPDX-License-Identifier: MIT
#include "commands/convert_command.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>

#include "convert/batch.h"
#include "convert/convert_order.h"
#include "convert/find_models.h"
#include "convert/watch.h"
#include "host/find_files.h"
#include "host/host_paths.h"
#include "host/source_date.h"
#include "options/choice_names.h"
#include "options/convert_options.h"
#include "options/mesh_options.h"
#include "platform/file_system.h"
#include "platform/process.h"
#include "results/convert_report.h"
#include "results/summary_table.h"
#include "results/unmatched_options.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"
#include "textures/image_reader.h"

namespace cli {
namespace {

constexpr const char* kConvertExamples =
    "  fbx2czp convert hero.fbx\n"
    "      writes hero.czp, and hero.xfg for later final settings, beside the model\n"
    "  fbx2czp convert \"Actor (Female).fbx\" --rotation-y 180 --output packages\n"
    "      the file name makes it a female actor; nothing is written beside the model\n"
    "  fbx2czp convert hero.fbx --double-sided Hair --exclude Helper --rename L_femur=\"left femur\"\n"
    "  fbx2czp convert hero.fbx --finish-settings hero.json\n"
    "      converts and applies final settings, so that bone renames know the skeleton\n"
    "  fbx2czp convert hero.fbx --repair\n"
    "      repairs what it can: lost bones, a wrong pose, parts out of place\n"
    "  fbx2czp convert characters/ props/lamp.fbx --jobs 8 --output packages --report report.json\n"
    "      converts whole folders, each model in a process of its own\n"
    "  fbx2czp convert characters/ -o packages --update\n"
    "      converts what has changed since the last time; --watch goes on with that until Ctrl-C\n";

/// @param isStrict  counts warnings, also `others` that belong to no model
int StatusOf(const std::vector<ModelResult>& results, bool isStrict, size_t others) {
  ExitStatus status;
  for (const ModelResult& result : results) {
    status.Add(result.code);
    // Of packages that are there, only --prove tells errors.
    const bool isWrong =
        std::any_of(result.faults.begin(), result.faults.end(),
                    [](const ts3d::Finding& fault) { return fault.severity == ts3d::Severity::Error; });
    if (isWrong) status.Add(kConverterWrong);
  }
  if (isStrict && (others > 0 || Sum(results).warnings > 0)) status.Add(kWarnings);
  return status.Get();
}

/// A report must not take the place of what it reports on, nor be refused when all the work is done.
void CheckReportPath(const std::string& report, const std::vector<ModelTask>& tasks) {
  namespace fs = platform::fs;
  if (report.empty() || report == kStandardOutput) return;
  std::error_code failed;
  const fs::file_status status = fs::status(report, failed);
  if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status)) return;
  const fs::path path = fs::weakly_canonical(fs::absolute(report, failed), failed);
  if (fs::is_directory(path, failed) || !fs::is_directory(path.parent_path(), failed)) {
    throw Failure(kNotWritten, report + ": the report cannot be written there");
  }
  for (const ModelTask& task : tasks) {
    const fs::path folder = fs::weakly_canonical(task.folder, failed), package = task.Package().filename();
    if (path == fs::weakly_canonical(task.model, failed) || path == folder / package ||
        path == folder / WithExtension(package, "xfg")) {
      throw std::runtime_error(report + ": the report would take the place of a model or its package");
    }
  }
}

std::optional<FinishSettings> FinishOf(const ConvertOptions& options) {
  std::optional<FinishSettings> finish;
  if (!options.finishSettings.empty()) ReadFinishSettings(options.finishSettings, finish.emplace());
  return finish;
}

/// Converts the models and tells what came of it, in words and in the report.
ConvertedModels ConvertAndTell(const ConvertOptions& options, const std::vector<ModelTask>& tasks) {
  const auto begin = std::chrono::steady_clock::now();
  int signal = 0;
  std::vector<ModelResult> results = ConvertAll(tasks, options, FinishOf(options), signal);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  const std::vector<ts3d::Finding> warnings = FindNamesOfNoModel(results);
  for (const ts3d::Finding& warning : warnings)
    PrintMessage(tasks.size() == 1 ? tasks.front().name : "", Severity::Warning, warning.text);
  if (tasks.size() > 1 && options.verbosity != Verbosity::Quiet) {
    std::fputs(SummaryTable(results, seconds, platform::TerminalColumns(options.Summary())).c_str(),
               options.Summary());
  }
  if (options.timings && tasks.size() > 1) {
    StepSeconds all;
    for (const ModelResult& result : results) {
      for (const auto& [step, taken] : result.steps) AddSeconds(step, taken, all);
    }
    std::fprintf(stderr, "fbx2czp: all models together: %s\n", DescribeSteps(all).c_str());
  }
  if (!options.report.empty()) WriteReport(options.report, results, warnings, seconds);
  if (signal == 0) {
    const int status = StatusOf(results, options.strict, warnings.size());
    return {std::move(results), false, status};
  }
  PrintMessage("", Severity::Error,
               "interrupted; " + std::to_string(results.size()) + " of " + std::to_string(tasks.size()) +
                   " models are done, nothing is left of the others");
  return {std::move(results), true, kInterrupted - SIGINT + signal};
}

int RunConvert(ConvertOptions& options) {
  CheckMeshOptions(options);
  RequireFolders(options.textureFolders);
  // A wrong one is told before anything is done.
  SourceDate();
  if (options.models.empty() && options.filesFrom.empty())
    throw Failure(kUsageError, "there is no model to convert. Try 'fbx2czp convert --help'.");
  if (!options.filesFrom.empty()) options.listed = ReadFileList(options.filesFrom);
  const std::vector<ModelTask> tasks = FindModels(options);
  if (tasks.empty()) PrintMessage("", Severity::Note, "the list is empty; there is nothing to convert");
  CheckReportPath(options.report, tasks);
  const ConvertModels convert = [&](const std::vector<ModelTask>& models) {
    return ConvertAndTell(options, models);
  };
  return options.watch ? WatchModels(options, convert) : convert(tasks).exitStatus;
}

void AddModelOptions(CLI::App& convert, ConvertOptions& options) {
  convert.add_option("MODEL", options.models, "Models (.fbx, .glb, .vrm, .dae, ...) and folders of them")
      ->type_name("");
  convert
      .add_option("-o,--output", options.outputFolder,
                  "Folder for the package and its .xfg document (default: beside each model); of one model\n"
                  "also the package to write, NAME.czp")
      ->type_name("FOLDER");
  convert
      .add_option("--rotation-y", options.rotationY,
                  "Turn about the up axis in degrees, for the document (0)")
      ->type_name("DEGREES");
  convert
      .add_option("--rotation-x", options.rotationX,
                  "Turn about the side axis in degrees, for the document (0)")
      ->type_name("DEGREES");
  TakesOneOf(convert
                 .add_option_function<std::string>(
                     "--actor-type",
                     [&options](const std::string& name) { options.actorType = ActorTypeOfName(name); },
                     "Kind of actor, whatever the path says: none, male, female, boy, girl, teenager or baby")
                 ->type_name("TYPE"),
             ActorTypeNames());
  convert
      .add_option("--files-from", options.filesFrom,
                  "List of more models, one in a line (or with a zero byte behind each, as find -print0\n"
                  "writes them); \"-\" reads it from standard input")
      ->type_name("LIST");
  convert
      .add_option("--base", options.base,
                  "Models keep the folders that they have below this one in the output folder\n"
                  "(for models of a list the current folder)")
      ->type_name("FOLDER");
}

void AddNameOptions(CLI::App& convert, ConvertOptions& options) {
  TakesPair(Repeatable(convert.add_option("--rename", options.boneRenames,
                                          "Product name of a bone; repeat for more")),
            "OLD=NEW");
  AddModelUnit(convert, options.modelUnit);
  AddRenamePreset(convert, options.renamePreset,
                  "Rename the bones of a rig of this kind to their product names: biped, mixamo,\nrocketbox, "
                  "unreal or vrm. --rename goes before it");
  TakesNumber(
      convert.add_option("--mesh-mode", options.meshMode,
                         "Which meshes get inward normals. Without --mesh: 1 all, 0 none (the default).\n"
                         "With --mesh: 2 those, 0 and 1 all others"),
      0, 2);
  TakesName(Repeatable(
      convert.add_option("--mesh", options.meshes, "Mesh that --mesh-mode is about; repeat for more")));
  TakesName(Repeatable(convert.add_option("--inward", options.inwardMeshes,
                                          "Mesh that gets inward normals; repeat for more")))
      ->excludes("--mesh");
  TakesName(Repeatable(convert.add_option("--outward", options.outwardMeshes,
                                          "Mesh that keeps outward normals, whatever --mesh-mode 1 does to "
                                          "all; repeat for more")))
      ->excludes("--mesh");
  TakesName(Repeatable(convert.add_option("--double-sided", options.doubleSidedMeshes,
                                          "Mesh to draw from both sides; repeat for more")));
  Repeatable(convert.add_option("--exclude", options.excludedNames,
                                "Mesh or material to leave out; repeat for more"))
      ->type_name("NAME");
}

void AddRepairOptions(CLI::App& convert, ConvertOptions& options) {
  ts3d::RepairSettings& repairs = options.repairs;
  convert.add_flag("--repair", options.repairsAsNeeded,
                   "Try the five repairs below on each model, use those that it needs, and tell which");
  convert.add_flag("--bind-from-skin", repairs.bindFromSkin,
                   "Take the pose in which the skin was bound, whatever the bind pose says; for models that "
                   "are converted in another pose");
  convert.add_flag("--open-groups", repairs.openGroups,
                   "Find bones below groups without a type, too; they are left out otherwise");
  convert.add_flag(
      "--join-roots", repairs.joinRoots,
      "Put all skeletons of the model below one new root bone; otherwise only the first is kept");
  convert.add_flag(
      "--attach-rigid", repairs.attachRigid,
      "Give meshes without a skin their place, and let them follow the bone they are parented to");
  convert.add_flag("--rigid-bones", repairs.rigidBones,
                   "Remove the scale of the bones and keep their places; for models whose root has a scale");
  AddMaxInfluences(convert, options.mostInfluences);
}

void AddPictureOptions(CLI::App& convert, ConvertOptions& options) {
  TakesNumber(convert.add_option("--max-texture", options.longestTextureSide,
                                 "Longest side in pixels of a texture (8192)"),
              1, textures::kLargestSide);
  TakesOneOf(convert
                 .add_option_function<std::string>(
                     "--max-texture-action",
                     [&options](const std::string& name) { options.tooLargeTextures = TooLargeOfName(name); },
                     "What becomes of larger pictures: shrink (the default) or leave-out")
                 ->type_name("ACTION"),
             TooLargeNames());
  AddTextureFolders(convert, options.textureFolders);
}

void AddRunOptions(CLI::App& convert, ConvertOptions& options) {
  convert
      .add_option("--finish-settings", options.finishSettings,
                  "JSON file with final settings to apply as well")
      ->type_name("FILE");
  TakesNumber(convert.add_option("-j,--jobs", options.jobs,
                                 "Models to convert at a time (default: one for each processor core)"),
              1, 256);
  AddPackLevel(convert, options.packLevel);
  convert
      .add_option("--report", options.report,
                  "JSON file to write with the results of all models; \"-\" prints it,\n"
                  "and all other output goes to standard error")
      ->type_name("FILE");
  AddSettingsOptions(convert, options.settingsFile, options.takesSettings);
  convert.add_flag(
      "--prove", options.proves,
      "Compare each package with its model, as fbx2czp prove does, and tell what moves differently");
  convert.add_flag(
      "--update", options.update,
      "Leave out models whose packages are newer than the model, its pictures, the settings and\n"
      "this program, and were made with the same options by --update");
  convert.add_flag("--watch", options.watch,
                   "Convert again whatever changes: models, their pictures and settings. Ctrl-C ends it");
  convert.add_flag("--timings", options.timings, "Tell how long each step took; reports always do");
  convert.add_flag("--force", options.force,
                   "Replace a .czp file even if it holds what fbx2czp has not written");
}

void AddOptions(CLI::App& convert, ConvertOptions& options) {
  convert.parse_complete_callback([&] {
    options.given = GivenOptions(convert);
    options.words = OptionWords(convert);
  });
  // The help lists them in this order.
  AddModelOptions(convert, options);
  AddNameOptions(convert, options);
  AddRepairOptions(convert, options);
  AddPictureOptions(convert, options);
  AddRunOptions(convert, options);
  AddNoPlugins(convert, options.loadsPlugins);
  AddStrict(convert, options.strict);
  AddVerbosity(convert, options.verbosity);
}

}  // namespace

void AddConvertCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<ConvertOptions>();
  CLI::App& convert = AddCommand(app, "convert", "Convert models into packages", run,
                                 [options] { return RunConvert(*options); });
  AddOptions(convert, *options);
  SetFooter(convert, kConvertExamples);
}

void ObeyConvertOrder(const std::string& text, const ChildProcess::Send& send) {
  const ConvertOrder order = OrderFromJson(text);
  CLI::App convert;
  ConvertOptions options;
  AddOptions(convert, options);
  convert.parse(std::vector<std::string>(order.options.rbegin(), order.options.rend()));
  CarryOut(order, options, FinishOf(options), send);
}

}  // namespace cli
