// SPDX-License-Identifier: MIT
#include "output/prove_output.h"

#include <algorithm>
#include <cstdio>

#include "core/json_output.h"
#include "prove/compare.h"
#include "prove/proof_json.h"
#include "terminal/terminal.h"

namespace cli {
namespace {

using prove::NamedError;
using prove::Proof;

constexpr int kProofSchema = 1;

std::string AsText(double error) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2g", error);
  return text;
}

std::string Amount(size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

void Print(const std::string& line) { std::printf("%s\n", Printable(line).c_str()); }

/// The worst of them, beyond the limit.
void PrintWorst(const char* what, std::vector<NamedError> errors) {
  constexpr size_t kMost = 5;
  std::erase_if(errors, [](const NamedError& each) { return !(each.worst.error > prove::kLimit); });
  std::stable_sort(errors.begin(), errors.end(),
                   [](const auto& a, const auto& b) { return a.worst.error > b.worst.error; });
  if (errors.empty()) return;
  std::string line = std::string("  ") + what + " beyond the limit:";
  for (size_t i = 0; i < std::min(errors.size(), kMost); ++i) {
    line += (i ? ", \"" : " \"") + errors[i].name + "\" " + AsText(errors[i].worst.error);
  }
  if (errors.size() > kMost) line += " and " + std::to_string(errors.size() - kMost) + " more";
  Print(line);
}

std::string SubjectText(const ts3d::Finding& finding) {
  constexpr size_t kMost = 3;
  const size_t count = finding.names.size();
  if (count == 0) return {};
  std::string text = std::string(NameOf(finding.subject, count)) + " ";
  for (size_t i = 0; i < std::min(count, kMost); ++i) text += (i ? ", \"" : "\"") + finding.names[i] + "\"";
  if (count > kMost) text += " and " + std::to_string(count - kMost) + " more";
  return text + ": ";
}

void PrintFinding(const std::string& model, const prove::ProofFinding& finding) {
  const std::string size =
      finding.error > 0.0 ? " Up to " + AsText(finding.error) + " of the diagonal." : std::string();
  std::printf("fbx2czp: %s: %s %s [%s]\n", Printable(model).c_str(), Label(stdout, finding.severity).c_str(),
              Printable(SubjectText(finding) + finding.text + size).c_str(), finding.code.c_str());
  if (!finding.fix.empty()) Print("    Fix: " + finding.fix);
}

/// Whether nothing is wrong but what --max-influences asked for.
bool IsAsAsked(const Proof& proof) {
  return std::none_of(proof.findings.begin(), proof.findings.end(), [](const ts3d::Finding& finding) {
    return finding.severity != Severity::Note &&
           finding.code != prove::WordsOf(prove::Cause::MostInfluences).code;
  });
}

std::string Headline(const Proof& proof) {
  switch (proof.verdict) {
    case prove::Verdict::Proven:
      return "the package moves as the model does";
    case prove::Verdict::RigFaults:
      if (IsAsAsked(proof))
        return "the package moves as the model does, but for influences that it was to lose";
      return "the package does not move as the model does: the format cannot hold all of the rig";
    case prove::Verdict::OurError:
      return "the package does not move as the model does: the converter is at fault";
    default:
      return "package and model cannot be compared";
  }
}

}  // namespace

void PrintProof(const ProvenModel& model, bool quiet) {
  if (!model.error.empty()) return cli::PrintMessage(model.name, Severity::Error, model.error);
  const Proof& proof = model.proof;
  if (quiet && proof.verdict == prove::Verdict::Proven) return;
  Print(model.name + ": " + Headline(proof));
  Print("  worst error " + AsText(proof.worst.error) + " of the diagonal (limit " + AsText(prove::kLimit) +
        "), in " + Amount(proof.poses.size(), "pose", "poses") + " of " +
        Amount(proof.vertices, "vertex", "vertices") + " in " +
        Amount(proof.meshes.size(), "mesh", "meshes") + " on " + Amount(proof.bones.size(), "bone", "bones"));
  if (proof.verdict != prove::Verdict::Proven) {
    PrintWorst("poses", proof.poses);
    PrintWorst("meshes", proof.meshes);
    PrintWorst("bones", proof.bones);
    if (!proof.firstBone.empty()) Print("  they part first at the bone \"" + proof.firstBone + "\"");
  }
  for (const prove::ProofFinding& finding : proof.findings) {
    if (!quiet || finding.severity != Severity::Note) PrintFinding(model.name, finding);
  }
  std::fflush(stdout);
}

std::string ProofsAsJson(const std::vector<ProvenModel>& models) {
  ts3d::JsonWriter json;
  json.OpenObject();
  ts3d::WriteJsonHead(json, "prove", kProofSchema);
  json.OpenArray("models");
  for (const ProvenModel& model : models) {
    Proof proof = model.proof;
    if (!model.error.empty())
      proof.findings.push_back({{"not-loaded", Severity::Error, ts3d::Subject::File, {}, model.error, {}}});
    json.OpenObject();
    json.Member("model", model.name);
    prove::WriteProof(json, proof);
    json.CloseObject();
  }
  json.CloseArray();
  json.CloseObject();
  return ts3d::JsonText(json.Text());
}

}  // namespace cli
