// SPDX-License-Identifier: MIT
#include "prove/prove.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <utility>

#include "mesh/claims/weigh_claims.h"
#include "prove/explain.h"
#include "scene/read_model.h"
#include "scene/sdk_manager.h"

namespace prove {
namespace {

using ts3d::Severity;
using ts3d::Subject;

/// Whether the document says that the package is one of the product's actors, which are turned up.
bool IsActor(const actor::Actor& actor) {
  constexpr const char* kActors[] = {"actor (male)", "actor (female)",   "actor (boy)",
                                     "actor (girl)", "actor (teenager)", "actor (baby)"};
  return std::find(std::begin(kActors), std::end(kActors), actor.document.objectId) != std::end(kActors);
}

/// A scaled root only shifts the whole model, until an animation places it. So that this hides nothing else,
/// the root is placed as animations do.
/// @return how far the skeleton file has it off, in units of the model
double PlaceRoot(const actor::Skeleton& skeleton, std::vector<BoneFacts>& facts, ModelRig& rig) {
  if (facts.empty() || facts.front().place != Cause::RootScale) return 0.0;
  facts.front().place = Cause::None;
  const RigNode& root = rig.nodes[static_cast<size_t>(rig.nodeOf.front())];
  rig.rootPlace = (rig.actorTurn * root.bound).Origin();
  const actor::Vector3& stored = skeleton.bones.front().translation;
  return Distance(*rig.rootPlace, {stored[0], stored[1], stored[2]});
}

/// Tells in words what was compared.
class Reporter {
 public:
  Reporter(const actor::Actor& actor, const Matches& matches, const Comparison& comparison, Proof& proof)
      : actor_(actor), matches_(matches), comparison_(comparison), proof_(proof) {}

  void TellErrors(const std::vector<Pose>& poses) {
    proof_.diagonal = comparison_.diagonal;
    proof_.worst = Place(comparison_.Overall());
    for (size_t i = 0; i < poses.size(); ++i) {
      proof_.poses.push_back({poses[i].name, Place(comparison_.poses[i])});
    }
    for (size_t m = 0; m < matches_.meshes.size(); ++m) {
      const MatchedMesh& mesh = matches_.meshes[m];
      proof_.vertices += mesh.points.size();
      Worst worst{0.0, m, 0};
      for (size_t v = 0; v < mesh.points.size(); ++v) {
        worst.Take(comparison_.WorstOf(m, v), m, v);
        proof_.mean += comparison_.WorstOf(m, v);
      }
      proof_.meshes.push_back({mesh.file->name, Place(worst)});
    }
    if (proof_.vertices > 0) proof_.mean /= static_cast<double>(proof_.vertices);
    for (size_t b = 0; b < actor_.skeleton.bones.size(); ++b) {
      proof_.bones.push_back({actor_.skeleton.bones[b].name, Place(comparison_.bones[b])});
    }
  }

  void TellCauses(const Explanations& explanations) {
    if (explanations.firstBone >= 0) {
      proof_.firstBone = actor_.skeleton.bones[static_cast<size_t>(explanations.firstBone)].name;
    }
    proof_.verdict = Verdict::Proven;
    for (const Explanation& each : explanations.causes) {
      const CauseWords& words = WordsOf(each.cause);
      const bool isOurs = IsOurs(each.cause);
      proof_.verdict = std::max(proof_.verdict, isOurs ? Verdict::OurError : Verdict::RigFaults);
      AddCause(words, isOurs ? Severity::Error : Severity::Warning, each.names, each.worst.error,
               each.vertices);
    }
  }

  void TellRootScale(double shift) {
    const CauseWords& words = WordsOf(Cause::RootScale);
    proof_.verdict = std::max(proof_.verdict, Verdict::RigFaults);
    AddCause(words, Severity::Warning, {actor_.skeleton.bones.front().name}, shift, proof_.vertices);
  }

  void TellUnmatched() {
    for (const std::string& name : matches_.unmatched) {
      proof_.verdict = Verdict::NotCompared;
      proof_.findings.push_back(
          {{"other-model",
            Severity::Error,
            Subject::Mesh,
            {name},
            "No mesh of the model has the triangles of this one: the package was made of "
            "another model, or of another version of it.",
            "Convert the model again. If that does not help, send us model and package."}});
    }
  }

  void TellNotes(const ModelRig& rig) {
    if (matches_.meshes.empty() && matches_.unmatched.empty()) {
      Note("nothing-to-compare", "The package has no vertices, so there is nothing to compare.");
    }
    if (rig.stand == Stand::Skins) {
      Note("stands-as-bound", "The package stands as its skins were bound, and not in the bind pose.");
    }
    if (comparison_.unusable > 0) {
      Note("bad-points", "Points of the model have no usable position; they were not compared.");
    }
  }

 private:
  void Note(const char* code, const char* text) {
    proof_.findings.push_back({{code, Severity::Note, Subject::File, {}, text, {}}});
  }

  void AddCause(const CauseWords& words, Severity severity, std::vector<std::string> names, double error,
                size_t vertices) {
    const Subject subject = words.isAboutBones ? Subject::Bone : Subject::Mesh;
    proof_.findings.push_back({{std::string(words.code), severity, subject, std::move(names),
                                std::string(words.text), std::string(words.fix)},
                               error,
                               vertices});
  }

  ErrorPlace Place(const Worst& worst) const {
    if (matches_.meshes.empty() || matches_.meshes[worst.mesh].points.empty()) return {};
    const actor::Mesh& mesh = *matches_.meshes[worst.mesh].file;
    const int32_t bone = MainBone(mesh, mesh.vertices[worst.vertex]);
    return {worst.error, mesh.name, worst.vertex,
            bone < 0 ? std::string() : actor_.skeleton.bones[static_cast<size_t>(bone)].name};
  }

  const actor::Actor& actor_;
  const Matches& matches_;
  const Comparison& comparison_;
  Proof& proof_;
};

HeatMap MapPose(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches,
                const Pose& pose) {
  HeatMap heat{pose.name, {}};
  std::vector<DrawnMesh> drawn = DrawPose(skeleton, rig, matches, pose);
  for (size_t m = 0; m < drawn.size(); ++m) {
    heat.meshes.push_back(
        {matches.meshes[m].file->name, std::move(drawn[m].model), std::move(drawn[m].package)});
  }
  return heat;
}

}  // namespace

Proof Prove(scene::KFbxScene& scene, const actor::Actor& actor, const ProofOptions& options, HeatMap* heat) {
  Proof proof;
  proof.seed = options.seed;
  proof.randomPoses = options.poses;
  proof.mostInfluences = options.mostInfluences;
  proof.modelUnit = options.modelUnit;
  ModelRig rig = ReadModelRig(scene, actor.skeleton, IsActor(actor));
  const Matches matches = MatchMeshes(scene, rig, actor);
  const double diagonal = MeasureDiagonal(rig, matches);
  std::vector<BoneFacts> facts = FindBoneFacts(actor.skeleton, rig, diagonal);
  const double shift = PlaceRoot(actor.skeleton, facts, rig);
  const std::vector<Pose> poses = MakePoses(actor.skeleton, rig, options.seed, options.poses);
  const Comparison comparison = Compare(actor.skeleton, rig, matches, poses, diagonal, options.threads);
  if (heat) {
    const auto worst = std::max_element(comparison.poses.begin(), comparison.poses.end(),
                                        [](const Worst& a, const Worst& b) { return a.error < b.error; });
    *heat =
        MapPose(actor.skeleton, rig, matches, poses[static_cast<size_t>(worst - comparison.poses.begin())]);
  }
  Reporter reporter(actor, matches, comparison, proof);
  reporter.TellErrors(poses);
  reporter.TellCauses(Explain(actor.skeleton, rig, matches, facts, comparison, options.mostInfluences));
  if (shift > 0.0) reporter.TellRootScale(shift / diagonal);
  reporter.TellUnmatched();
  reporter.TellNotes(rig);
  return proof;
}

bool ProveModel(const std::string& path, const actor::Actor& actor, const ProofOptions& options, Proof& proof,
                std::string& error, HeatMap* heat) {
  const scene::KFbxSdkManagerPtr manager(scene::KFbxSdkManager::Create());
  if (!manager) throw std::bad_alloc();
  scene::KFbxScene& scene = *manager->CreateScene("");
  const scene::KFbxModelResult read = ReadModel(
      manager->GetReaderRegistry(), {.path = path, .unit = options.modelUnit}, scene, ts3d::WeighClaims);
  error = read.error;
  if (read.isRead) proof = Prove(scene, actor, options, heat);
  return read.isRead;
}

}  // namespace prove
