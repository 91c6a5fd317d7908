// SPDX-License-Identifier: MIT
#include "commands/check_command.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "convert/rename_preset.h"
#include "converter/check_textures.h"
#include "host/find_models.h"
#include "host/host_paths.h"
#include "output/check_output.h"
#include "rig_check/check_rig.h"
#include "rig_check/finding_kinds.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

/// What "fbx2czp check" was asked for.
struct CheckCommandOptions {
  std::vector<std::string> models;
  std::vector<std::string> excludedNames;
  std::vector<std::string> textureFolders;
  std::string renamePreset;
  bool json = false;
  bool quiet = false;
  bool loadsPlugins = true;
};

ts3d::RigReport CheckModel(const fs::path& model, const CheckCommandOptions& options) {
  ts3d::RigReport report;
  if (HasBackslashInName(model)) {
    report.Add(ts3d::findings::kNotLoaded, {}, {"its path has a backslash"});
    return report;
  }
  report = ts3d::CheckRig(
      ConverterPath(model),
      {options.excludedNames, options.loadsPlugins ? ts3d::Plugins::Load : ts3d::Plugins::LeaveOut});
  ts3d::AddTextureFindings(model, options.textureFolders, report);
  report.SortFindings();
  return report;
}

std::vector<std::string> Renames(const ts3d::RigReport& report, const std::string& preset) {
  if (preset.empty()) return {};
  std::vector<NamedBone> bones;
  for (const ts3d::OutputBone& bone : report.bones) bones.push_back({bone.name, bone.modelName});
  return RenamePreset(RenamePresetTexts().at(preset)).RenamesOf(bones);
}

int RunCheck(const CheckCommandOptions& options) {
  const std::vector<ModelTask> tasks = FindModels(options.models);
  std::vector<CheckedModel> models;
  ts3d::Severity worst = ts3d::Severity::Note;
  for (const ModelTask& task : tasks) {
    CheckedModel model{task.name, CheckModel(task.model, options), {}};
    model.renames = Renames(model.report, options.renamePreset);
    worst = std::max(worst, model.report.Worst());
    if (options.json) {
      models.push_back(std::move(model));
    } else {
      PrintReport(model, options.quiet, tasks.size() > 1);
    }
  }
  if (options.json) std::fputs(ReportsAsJson(models).c_str(), stdout);
  return static_cast<int>(worst);
}

}  // namespace

void AddCheckCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<CheckCommandOptions>();
  CLI::App& check = AddCommand(app, "check", "Tell what is wrong with models, without converting them", run,
                               [options] { return RunCheck(*options); });
  check.add_option("MODEL", options->models, "FBX files, binary or ASCII, and folders of such files")
      ->required()
      ->type_name("");
  Repeatable(check.add_option("--exclude", options->excludedNames,
                              "Mesh or material that will be left out; repeat for more"));
  AddTextureFolders(check, options->textureFolders);
  AddRenamePreset(
      check, options->renamePreset,
      "Show what convert --rename-preset would call the bones: biped, mixamo, rocketbox\nor unreal");
  check.add_flag("--json", options->json, "Print the reports as JSON");
  check.add_flag("-q,--quiet", options->quiet, "Show warnings and worse only");
  AddNoPlugins(check, options->loadsPlugins);
  check.footer(
      "Examples:\n"
      "  fbx2czp check hero.fbx\n"
      "      tells what hero.czp would hold and what is wrong with the rig\n"
      "  fbx2czp check --quiet characters/ props/lamp.fbx\n"
      "      tells the warnings of all models below the folder and of one more\n"
      "  fbx2czp check --json characters/ > report.json\n"
      "\nExit codes, of several models the worst:\n"
      "    0  no problems, notes at most\n"
      "    1  warnings: something will look wrong\n"
      "    2  a model cannot be loaded or has no mesh\n"
      "   64  wrong command line\n");
}

}  // namespace cli
