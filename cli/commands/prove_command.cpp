// SPDX-License-Identifier: MIT
#include "commands/prove_command.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "core/names.h"
#include "host/find_models.h"
#include "output/prove_output.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

constexpr int kProven = 0, kRigFaults = 1, kNotCompared = 2, kOurError = 3;

struct ProveOptions {
  std::vector<std::string> inputs;
  int poses = 64;
  uint64_t seed = 1;
  bool json = false;
  bool quiet = false;

  /// Whether the second input is the package of the first.
  bool NamesPackage() const {
    return inputs.size() == 2 && ts3d::EqualsIgnoreCase(fs::path(inputs[1]).extension().string(), ".czp");
  }
};

int ExitCodeOf(const ProvenModel& model) {
  if (!model.error.empty()) return kNotCompared;
  switch (model.proof.verdict) {
    case prove::Verdict::Proven:
      return kProven;
    case prove::Verdict::RigFaults:
      return kRigFaults;
    case prove::Verdict::OurError:
      return kOurError;
    default:
      return kNotCompared;
  }
}

int RunProve(const ProveOptions& options) {
  const std::string package = options.NamesPackage() ? options.inputs[1] : std::string();
  const std::vector<ModelTask> tasks =
      FindModels(package.empty() ? options.inputs : std::vector{options.inputs.front()});
  std::vector<ProvenModel> models;
  int worst = kProven;
  for (const ModelTask& task : tasks) {
    ProvenModel model = ProveModelFile(task.name, task.model, package, {options.seed, options.poses, 0});
    worst = std::max(worst, ExitCodeOf(model));
    if (options.json) {
      models.push_back(std::move(model));
    } else {
      PrintProof(model, options.quiet);
    }
  }
  if (options.json) std::fputs(ProofsAsJson(models).c_str(), stdout);
  return worst;
}

}  // namespace

void AddProveCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<ProveOptions>();
  CLI::App& prove = AddCommand(app, "prove", "Prove that packages move as their models do", run,
                               [options] { return RunProve(*options); });
  prove
      .add_option("MODEL", options->inputs,
                  "FBX files, and folders of such files, which are converted for it; or one FBX file\n"
                  "and its package (.czp)")
      ->required()
      ->type_name("");
  TakesNumber(prove.add_option("--poses", options->poses,
                               "Random poses to compare in, beside bind pose and present pose (64)"),
              0, 10000);
  prove.add_option("--seed", options->seed, "Number that the random poses are drawn from (1)")
      ->type_name("NUMBER");
  prove.add_flag("--json", options->json, "Print the proofs as JSON");
  prove.add_flag("-q,--quiet", options->quiet, "Show only what does not move as its model does");
  prove.footer(
      "Examples:\n"
      "  fbx2czp prove hero.fbx\n"
      "      converts the model in memory and compares every vertex in 66 poses\n"
      "  fbx2czp prove hero.fbx hero.czp\n"
      "      compares a package that is there\n"
      "  fbx2czp prove --quiet --poses 16 characters/\n"
      "      tells which models below the folder do not move as they should\n"
      "\nExit codes, of several models the worst:\n"
      "    0  proven: everything moves as in the model\n"
      "    1  something moves otherwise, because the format cannot hold all of the rig\n"
      "    2  a model or package cannot be read, or they do not belong together\n"
      "    3  something moves otherwise, and the converter is at fault\n"
      "   64  wrong command line\n");
}

}  // namespace cli
