// SPDX-License-Identifier: MIT
#include "proof/prove_repairs.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "actor/load_actor.h"
#include "driver/detect_actor_type.h"
#include "driver/scene_loader.h"
#include "host/host_paths.h"
#include "mesh/claims/weigh_claims.h"
#include "proof/prove_model.h"
#include "prove/compare.h"
#include "scene/model/scene.h"
#include "scene/read_model.h"

namespace cli {
namespace fs = platform::fs;
namespace {

/// Beside bind pose and present pose. What a repair is about shows in all of them.
constexpr int kPoses = 8;
/// Of sets that come that near to the least error, the smallest is kept.
constexpr double kAsGood = 1.1;

RepairError ErrorOf(const prove::Proof& proof) {
  RepairError error{proof.worst.error, proof.mean, 0.0, proof.poses.front().worst.error};
  for (const prove::ProofFinding& finding : proof.findings) {
    if (finding.code == prove::WordsOf(prove::Cause::RootScale).code) error.shift = finding.error;
  }
  return error;
}

/// @return none when there is no such package, or it cannot be compared
std::optional<RepairError> Try(scene::KFbxScene& scene, const ts3d::ModelSource& source,
                               const fs::path& model, ConvertOptions options,
                               const ts3d::RepairSettings& repairs) {
  options.repairs = repairs;
  options.actorType = source.actorType;
  std::string error;
  const std::string package = ConvertInMemory(model, options, error);
  actor::PackageContents contents;
  actor::Actor actor;
  actor::Findings findings;
  if (!error.empty() || !ReadPackageBytes(package, {}, contents, error) ||
      !BuildActor(contents, actor, findings, error))
    return std::nullopt;
  const prove::Proof proof =
      prove::Prove(scene, actor, {.poses = kPoses, .threads = 1, .mostInfluences = options.mostInfluences});
  if (proof.verdict == prove::Verdict::NotCompared) return std::nullopt;
  return ErrorOf(proof);
}

using Trial = std::pair<ts3d::RepairSettings, RepairError>;

/// @param trials  not empty, the smallest sets first
const Trial& Best(const std::vector<Trial>& trials) {
  const auto total = [](const Trial& trial) { return trial.second.mean + trial.second.shift; };
  const auto least = std::min_element(trials.begin(), trials.end(),
                                      [&](const Trial& a, const Trial& b) { return total(a) < total(b); });
  // Each by itself: a large shift hides all else.
  return *std::find_if(trials.begin(), trials.end(), [&](const Trial& trial) {
    const RepairError& error = trial.second;
    return error.mean <= kAsGood * least->second.mean && error.shift <= kAsGood * least->second.shift;
  });
}

}  // namespace

ProvenRepairs ChooseRepairsByProof(scene::KFbxScene& scene, const ts3d::ModelSource& source,
                                   const fs::path& model, const ConvertOptions& options) {
  const std::vector<ts3d::RepairSettings> sets = CandidateRepairs(source);
  if (sets.size() == 1 && sets.front() == source.settings.repairs)
    return {{source.settings.repairs, {}}, {}, {}};
  const std::optional<RepairError> before = Try(scene, source, model, options, source.settings.repairs);
  if (!before) return {ChooseRepairs(source), {}, {}};
  std::vector<Trial> trials;
  for (const ts3d::RepairSettings& set : sets) {
    const std::optional<RepairError> error =
        set == source.settings.repairs ? before : Try(scene, source, model, options, set);
    if (!error || error->atRest > std::max(prove::kLimit, before->atRest)) continue;
    trials.emplace_back(set, *error);
    if (error->Worst() <= prove::kLimit) break;
  }
  if (trials.empty()) return {{source.settings.repairs, {}}, before, before};
  const auto& [settings, after] =
      trials.back().second.Worst() <= prove::kLimit ? trials.back() : Best(trials);
  return {DescribeRepairs(source, settings), before, after};
}

std::string RepairErrors(const ProvenRepairs& repairs) {
  const auto& [chosen, before, after] = repairs;
  if (!before || !after || before->Worst() <= prove::kLimit) return {};
  const std::string without =
      "vertices move differently from the model, by up to " + ErrorText(before->Worst());
  if (chosen.needed.empty()) return without + ", and no repair brings them closer";
  return "without repairs " + without + "; with them by up to " + ErrorText(after->Worst());
}

std::optional<ProvenRepairs> ProveRepairs(const fs::path& model, const ConvertOptions& options) {
  ts3d::Settings settings;
  settings.exclusionList = options.excludedNames;
  settings.repairs = options.repairs;
  const ts3d::StatusChannel mute;
  const std::string path = ConverterPath(model);
  std::optional<ProvenRepairs> found;
  try {
    ts3d::LoadedScene loaded;
    loaded.CreateQuietly();
    const scene::KFbxModelResult read =
        ReadModel(loaded.Manager().GetReaderRegistry(), {.path = path, .unit = options.modelUnit},
                  loaded.Scene(), ts3d::WeighClaims);
    const ts3d::ActorType actorType = options.actorType.value_or(ts3d::DetectActorType(path));
    if (read.isRead) {
      const ts3d::ModelSource source{loaded.Scene(), settings, mute, actorType, true};
      found = ChooseRepairsByProof(loaded.Scene(), source, model, options);
    }
  } catch (const std::exception&) {
    // A model that is too large for it stays without.
  }
  return found;
}

}  // namespace cli
