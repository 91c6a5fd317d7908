// SPDX-License-Identifier: MIT
#include "proof/prove_conversion.h"

#include <algorithm>

#include "proof/prove_model.h"
#include "results/result_messages.h"

namespace cli {
namespace {

/// What an option costs shows in a few.
constexpr int kCostPoses = 16;

std::string CostOfInfluences(const prove::Proof& proof) {
  for (const prove::ProofFinding& finding : proof.findings) {
    if (finding.code != prove::WordsOf(prove::Cause::MostInfluences).code) continue;
    return "this moves " + std::to_string(finding.vertices) + " vertices, by up to " +
           ErrorText(finding.error);
  }
  return "this moves no vertex";
}

}  // namespace

std::string CostOfInfluences(const platform::fs::path& model, const ConvertOptions& options) {
  const ProvenModel proven =
      ProveModelFile({}, model, {}, {.poses = kCostPoses, .mostInfluences = options.mostInfluences}, options);
  return proven.error.empty() ? CostOfInfluences(proven.proof) : std::string();
}

void ProveConversion(const platform::fs::path& model, const platform::fs::path& package,
                     const ConvertOptions& options, ModelResult& result) {
  const auto note = [&](const char* code, std::string text) {
    result.notes.push_back({code, ts3d::Severity::Note, ts3d::Subject::File, {}, std::move(text), {}});
  };
  // Models are converted side by side, each in a process of its own.
  prove::ProofOptions asked{.threads = 1, .mostInfluences = options.mostInfluences};
  if (!options.proves) asked.poses = kCostPoses;
  const ProvenModel proven = ProveModelFile(result.model, model, package, asked, options);
  if (!proven.error.empty()) {
    result.faults.push_back({"not-compared",
                             ts3d::Severity::Warning,
                             ts3d::Subject::File,
                             {},
                             "The package cannot be compared with the model: " + proven.error + ".",
                             {}});
    return;
  }
  if (options.mostInfluences > 0) {
    note("max-influences", "vertices keep their " + std::to_string(options.mostInfluences) +
                               " strongest influences: " + CostOfInfluences(proven.proof));
  }
  if (!options.proves) return;
  const std::string worst = ErrorText(proven.proof.worst.error);
  if (proven.proof.verdict == prove::Verdict::Proven) {
    note("proven", "proven: the package moves as the model does, to " + worst);
  } else {
    note("not-proven", "not proven: the package moves differently from the model, by up to " + worst);
  }
  const std::vector<ts3d::Finding> told = MessagesOf(result);
  for (const prove::ProofFinding& finding : proven.proof.findings) {
    const bool isKnown =
        std::any_of(told.begin(), told.end(), [&](const auto& fault) { return fault.code == finding.code; });
    if (finding.severity == ts3d::Severity::Note || isKnown) continue;
    result.faults.push_back(finding);
    result.faults.back().text += " Moves vertices by up to " + ErrorText(finding.error) + ".";
  }
}

}  // namespace cli
