// SPDX-License-Identifier: MIT
#include "proof/prove_model.h"

#include <cstdio>
#include <new>

#include "actor/load_actor.h"
#include "converter/converter.h"
#include "core/names.h"
#include "fbx_to_ts3d.h"
#include "host/host_paths.h"
#include "host/input_problem.h"
#include "proof/prove_repairs.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;
namespace {

/// @return code of FbxToTs3dResult
int32_t ConvertTo(std::string& package, const fs::path& model, const ConvertOptions& asked,
                  std::string& error) {
  ts3d::Converter converter;
  ts3d::ConverterOptions options;
  options.convertsPictures = false;
  options.actorType = asked.actorType;
  options.repairs = asked.repairs;
  options.mostInfluences = asked.mostInfluences;
  options.exclusions = asked.excludedNames;
  options.modelUnit = asked.modelUnit;
  ts3d::ConverterHost host;
  host.onPackage = [&](std::string_view bytes) {
    package += bytes;
    return true;
  };
  converter.SetUp(std::move(options), std::move(host));
  const int32_t code = converter.Convert({model, std::nullopt}, {});
  if (code != FBX_TO_TS3D_OK) error = converter.Error();
  return code;
}

/// @return the package; `proven` tells why there is none
std::string Convert(const fs::path& model, ConvertOptions options, ProvenModel& proven) {
  if (options.repairsAsNeeded) {
    if (const auto repairs = ProveRepairs(model, options)) options.repairs = repairs->chosen.settings;
  }
  std::string package;
  const int32_t code = ConvertTo(package, model, options, proven.error);
  if (code == FBX_TO_TS3D_NO_MESH) proven.status = kNothingToDo;
  return package;
}

/// Members that could not even be unpacked.
void FindDamage(const actor::PackageContents& contents, actor::Findings& findings) {
  bool hasSkeleton = false;
  for (const actor::Member& member : contents.members) {
    hasSkeleton |=
        member.sound && !member.superseded && member.size > 0 && ts3d::HasExtension(member.name, ".csf");
    if (member.sound) continue;
    actor::AddProblem(findings, "damaged-member", actor::Subject::Member, member.name,
                      "cannot be unpacked: it is damaged or encrypted", actor::kConvertAgain);
  }
  if (hasSkeleton) return;
  actor::AddProblem(findings, "no-skeleton-file", actor::Subject::Member, "skeleton.csf",
                    "is missing: there is nothing that could move", actor::kConvertAgain);
}

/// What was left out of the actor because it is damaged.
void TellDamage(const actor::Findings& findings, prove::Proof& proof) {
  for (const ts3d::Finding& finding : findings) {
    const std::string name = actor::NameIn(finding);
    if (finding.severity != ts3d::Severity::Warning ||
        !(ts3d::HasExtension(name, ".cmf") || ts3d::HasExtension(name, ".csf")))
      continue;
    proof.verdict = prove::Verdict::NotCompared;
    proof.findings.push_back({finding});
    proof.findings.back().severity = ts3d::Severity::Error;
  }
}

actor::Findings LoadPackage(const fs::path& model, const fs::path& package, const ConvertOptions& convert,
                            actor::Actor& actor, ProvenModel& proven) {
  std::string& error = proven.error;
  actor::PackageContents contents;
  actor::Findings findings;
  if (package.empty()) {
    const std::string bytes = Convert(model, convert, proven);
    if (error.empty()) ReadPackageBytes(bytes, {}, contents, error);
  } else {
    ReadPackage(package.string(), {}, contents, error);
  }
  if (error.empty()) FindDamage(contents, findings);
  if (error.empty()) BuildActor(contents, actor, findings, error);
  return findings;
}

}  // namespace

std::string ErrorText(double error) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2g %s the model's diagonal", error, error < 1.0 ? "of" : "times");
  return text;
}

std::string ConvertInMemory(const fs::path& model, const ConvertOptions& options, std::string& error) {
  std::string package;
  ConvertTo(package, model, options, error);
  return package;
}

ProvenModel ProveModelFile(const std::string& name, const fs::path& model, const fs::path& package,
                           const prove::ProofOptions& options, const ConvertOptions& convert) {
  ProvenModel proven{name, {}, kUnreadable, {}};
  if (HasBackslashInName(model)) {
    proven.error = "its path has a backslash";
    return proven;
  }
  for (const fs::path& input : {model, package}) {
    const auto problem = input.empty() ? std::nullopt : FindInputProblem(input);
    if (!problem) continue;
    proven.error = problem->text;
    proven.status = problem->exitStatus;
    return proven;
  }
  prove::ProofOptions own = options;
  own.modelUnit = convert.modelUnit;
  try {
    actor::Actor actor;
    const actor::Findings findings = LoadPackage(model, package, convert, actor, proven);
    if (proven.error.empty() &&
        prove::ProveModel(ConverterPath(model), actor, own, proven.proof, proven.error)) {
      TellDamage(findings, proven.proof);
    }
  } catch (const std::bad_alloc&) {
    proven.error = "there is not enough memory";
  }
  return proven;
}

}  // namespace cli
