// SPDX-License-Identifier: MIT
#include "commands/check_command.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

#include "convert/find_models.h"
#include "converter/check_textures.h"
#include "host/host_paths.h"
#include "host/input_problem.h"
#include "options/rename_preset.h"
#include "output/check_output.h"
#include "platform/file_system.h"
#include "proof/prove_conversion.h"
#include "proof/prove_repairs.h"
#include "rig_check/check_rig.h"
#include "rig_check/finding_kinds.h"
#include "settings/model_settings.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;
namespace {

/// What "fbx2czp check" was asked for.
struct CheckCommandOptions {
  std::vector<std::string> models;
  ConvertOptions convert;  ///< what a conversion would be asked for
  bool json = false;
  bool quiet = false;
  bool isStrict = false;  ///< is always
};

/// A report on what is no model at all. `why` is a clause.
ts3d::RigReport NoModel(const std::string& why) {
  ts3d::RigReport report;
  report.Add(ts3d::findings::kNotLoaded, {}, {why});
  // To export again what was never exported is no advice.
  report.findings.back().fix.clear();
  return report;
}

/// Puts the repairs that the model's proof speaks for into the place of those that were only tried.
void TellProvenRepairs(const fs::path& model, const ConvertOptions& options, ts3d::RigReport& report) {
  const auto isRepair = [](const ts3d::Finding& finding) {
    return finding.code == ts3d::findings::kRepairHelps.code;
  };
  if (std::none_of(report.findings.begin(), report.findings.end(), isRepair)) return;
  const std::optional<ProvenRepairs> repairs = ProveRepairs(model, options);
  if (!repairs || !repairs->before) return;
  std::erase_if(report.findings, isRepair);
  for (const ts3d::NeededRepair& repair : repairs->chosen.needed)
    report.Add(ts3d::findings::kRepairHelps, {}, {repair.option, repair.reason});
  if (const std::string errors = RepairErrors(*repairs); !errors.empty())
    report.Add(ts3d::findings::kRepairProof, {}, {errors});
}

ts3d::RigReport CheckModel(const fs::path& model, const ConvertOptions& options, int& status) {
  if (HasBackslashInName(model)) return NoModel("its path has a backslash");
  if (const auto problem = FindInputProblem(model)) {
    status = problem->exitStatus;
    ts3d::RigReport report;
    if (!fs::exists(model)) return report.Add(ts3d::findings::kNoFile), report;
    return NoModel(problem->text);
  }
  ts3d::RigReport report = ts3d::CheckRig(
      ConverterPath(model),
      {options.excludedNames, options.loadsPlugins ? ts3d::Plugins::Load : ts3d::Plugins::LeaveOut, false,
       std::nullopt, options.actorType, options.modelUnit});
  if (const std::string known = report.loaded ? "" : RecogniseModel(model); !known.empty())
    return NoModel(known);
  ts3d::AddTextureFindings(model, options.textureFolders, report);
  TellProvenRepairs(model, options, report);
  if (options.mostInfluences > 0) {
    if (const std::string cost = CostOfInfluences(model, options); !cost.empty())
      report.Add(ts3d::findings::kMaxInfluences, {}, {std::to_string(options.mostInfluences), cost});
  }
  report.SortFindings();
  return report;
}

int StatusOf(const ts3d::RigReport& report) {
  if (report.Worst() == ts3d::Severity::Note) return kSuccess;
  if (report.Worst() == ts3d::Severity::Warning) return kWarnings;
  return report.loaded ? kNothingToDo : kUnreadable;
}

std::vector<std::string> Renames(const ts3d::RigReport& report, const std::string& preset) {
  if (preset.empty()) return {};
  std::vector<NamedBone> bones;
  for (const ts3d::OutputBone& bone : report.bones)
    bones.push_back({bone.name, bone.modelName, bone.humanBone});
  return RenamePreset(RenamePresetTexts().at(preset)).RenamesOf(bones);
}

int RunCheck(const CheckCommandOptions& options) {
  RequireFolders(options.convert.textureFolders);
  const std::vector<ModelTask> tasks = FindModels(options.models);
  std::vector<CheckedModel> models;
  ExitStatus all;
  std::array<size_t, 3> counts{};  // sound, with warnings, not to be converted
  for (const ModelTask& task : tasks) {
    int status = kSuccess;
    const ConvertOptions convert = OptionsOf(task.model, options.convert, std::nullopt).options;
    CheckedModel model{task.name, CheckModel(task.model, convert, status), {}};
    model.renames = Renames(model.report, convert.renamePreset);
    if (status == kSuccess) status = StatusOf(model.report);
    all.Add(status);
    ++counts[static_cast<size_t>(std::min(status, kWarnings + 1))];
    if (options.json) {
      models.push_back(std::move(model));
    } else {
      PrintReport(model, options.quiet, tasks.size() > 1);
    }
  }
  if (options.json) {
    std::fputs(ReportsAsJson(models).c_str(), stdout);
  } else if (tasks.size() > 1 && !options.quiet) {
    std::printf("%zu models: %zu sound, %zu with warnings, %zu that cannot be converted\n", tasks.size(),
                counts[0], counts[1], counts[2]);
  }
  return all.Get();
}

}  // namespace

void AddCheckCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<CheckCommandOptions>();
  CLI::App& check = AddCommand(app, "check", "Tell what is wrong with models, without converting them", run,
                               [options] { return RunCheck(*options); });
  NoteGivenOptions(check, options->convert.given);
  check.add_option("MODEL", options->models, "Models (.fbx, .glb, .vrm, .dae, ...) and folders of them")
      ->required()
      ->type_name("");
  Repeatable(check.add_option("--exclude", options->convert.excludedNames,
                              "Mesh or material that will be left out; repeat for more"));
  AddModelUnit(check, options->convert.modelUnit);
  AddTextureFolders(check, options->convert.textureFolders);
  AddRenamePreset(
      check, options->convert.renamePreset,
      "Show what convert --rename-preset would call the bones: biped, mixamo,\nrocketbox, unreal or vrm");
  check.add_flag("--json", options->json, "Print the reports as JSON");
  check.add_flag("-q,--quiet", options->quiet, "Show warnings and errors only");
  AddMaxInfluences(check, options->convert.mostInfluences);
  AddSettingsOptions(check, options->convert.settingsFile, options->convert.takesSettings);
  AddNoPlugins(check, options->convert.loadsPlugins);
  AddStrict(check, options->isStrict);
  SetFooter(check,
            "  fbx2czp check hero.fbx\n"
            "      tells what hero.czp would hold and what is wrong with the rig\n"
            "  fbx2czp check --quiet characters/ props/lamp.fbx\n"
            "      tells the warnings of all models below the folder and of one more\n"
            "  fbx2czp check --json characters/ > report.json\n");
}

}  // namespace cli
