// SPDX-License-Identifier: MIT
#include "commands/prove_command.h"

#include <cstdio>
#include <memory>

#include "convert/find_models.h"
#include "host/host_paths.h"
#include "output/prove_output.h"
#include "platform/file_system.h"
#include "proof/certificate.h"
#include "settings/model_settings.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace cli {
namespace fs = platform::fs;
namespace {

struct ProveOptions {
  std::vector<std::string> inputs;
  int poses = 64;
  uint64_t seed = 1;
  std::string certificate;  ///< file to write, or empty
  std::string verify;       ///< certificate to check, or empty
  bool json = false;
  bool quiet = false;
  ConvertOptions convert;  ///< what models are converted with

  /// Whether the second input is the package of the first.
  bool NamesPackage() const { return inputs.size() == 2 && HasExtension(inputs[1], ".czp"); }
};

int StatusOf(const ProvenModel& model) {
  if (!model.error.empty()) return model.status;
  switch (model.proof.verdict) {
    case prove::Verdict::Proven:
      return kSuccess;
    case prove::Verdict::RigFaults:
      return kWarnings;
    case prove::Verdict::OurError:
      return kConverterWrong;
    default:
      return kUnreadable;
  }
}

int RunProofs(const ProveOptions& options) {
  const std::string package = options.NamesPackage() ? options.inputs[1] : std::string();
  const std::vector<ModelTask> tasks =
      FindModels(package.empty() ? options.inputs : std::vector{options.inputs.front()});
  std::vector<ProvenModel> models;
  ExitStatus all;
  for (const ModelTask& task : tasks) {
    const ConvertOptions convert = OptionsOf(task.model, options.convert, std::nullopt).options;
    ProvenModel model = ProveModelFile(task.name, task.model, package,
                                       {options.seed, options.poses, 0, convert.mostInfluences}, convert);
    all.Add(StatusOf(model));
    if (!options.certificate.empty() && model.error.empty())
      WriteCertificate(fs::absolute(options.certificate), task.model, package, model.proof);
    if (options.json) {
      models.push_back(std::move(model));
    } else {
      PrintProof(model, options.quiet);
    }
  }
  if (options.json) std::fputs(ProofsAsJson(models).c_str(), stdout);
  return all.Get();
}

int Verify(const ProveOptions& options) {
  const auto input = [&](size_t i) { return options.inputs.size() > i ? options.inputs[i] : std::string(); };
  const Verification found = VerifyCertificate(fs::absolute(options.verify), input(0), input(1));
  if (!found.problem.empty()) {
    PrintMessage(options.verify, Severity::Error, "the certificate does not hold: " + found.problem);
    return kWarnings;
  }
  if (!options.quiet) {
    std::printf("%s: the certificate holds: %s, worst error %.2g of the diagonal\n",
                Printable(options.verify).c_str(), found.result.c_str(), found.worst);
  }
  return kSuccess;
}

/// What does not go together.
void CheckInputs(const ProveOptions& options) {
  if (options.verify.empty() && options.inputs.empty()) throw CLI::RequiredError("MODEL");
  if (!options.certificate.empty() && !options.NamesPackage()) {
    throw CLI::ValidationError("--certificate", "is for a model and its package: prove MODEL PACKAGE");
  }
}

}  // namespace

void AddProveCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<ProveOptions>();
  CLI::App& prove = AddCommand(app, "prove", "Prove that packages move as their models do", run, [options] {
    return options->verify.empty() ? RunProofs(*options) : Verify(*options);
  });
  prove.parse_complete_callback([&prove, options] {
    options->convert.given = GivenOptions(prove);
    CheckInputs(*options);
  });
  prove
      .add_option("MODEL", options->inputs,
                  "Models (.fbx, .glb, .vrm, .dae, ...) and folders of them, which are converted for it; "
                  "or\none model "
                  "and its package (.czp)")
      ->type_name("");
  TakesNumber(prove.add_option("--poses", options->poses,
                               "Random poses to compare in, beside bind pose and present pose (64)"),
              0, kMostPoses);
  prove.add_option("--seed", options->seed, "Number that the random poses are drawn from (1)")
      ->type_name("NUMBER");
  prove
      .add_option("--certificate", options->certificate,
                  "JSON file to write: what was proven of which model and package")
      ->type_name("FILE");
  prove
      .add_option("--verify", options->verify,
                  "Certificate to check: the same files, and the same result in the same poses")
      ->type_name("FILE");
  prove.add_flag("--repair", options->convert.repairsAsNeeded,
                 "Convert as convert --repair does, with the repairs that a model needs");
  AddMaxInfluences(prove, options->convert.mostInfluences);
  AddModelUnit(prove, options->convert.modelUnit);
  AddSettingsOptions(prove, options->convert.settingsFile, options->convert.takesSettings);
  prove.add_flag("--json", options->json, "Print the proofs as JSON");
  prove.add_flag("-q,--quiet", options->quiet, "Show only what does not move as its model does");
  SetFooter(prove,
            "  fbx2czp prove hero.fbx\n"
            "      converts the model in memory and compares every vertex in 66 poses\n"
            "  fbx2czp prove hero.fbx hero.czp --certificate hero.proof.json\n"
            "      compares a package that is there, and writes down what came out\n"
            "  fbx2czp prove --verify hero.proof.json\n"
            "      checks that against the files beside it, and proves them again\n"
            "  fbx2czp prove --quiet --poses 16 characters/\n"
            "      tells which models below the folder do not move as they should\n");
}

}  // namespace cli
