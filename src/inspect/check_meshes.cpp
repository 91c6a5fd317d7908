// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "inspect/actor_measure.h"
#include "inspect/check_actor.h"

namespace actor {
namespace {

constexpr double kWeightTolerance = 1e-3;
constexpr const char* kCheckBindPose =
    "check the bind pose, and whether mesh and skeleton have the same scale and axes in the model";

void CheckWeights(const Mesh& mesh, Findings& findings) {
  size_t loose = 0, wrong = 0;
  for (const Vertex& vertex : mesh.vertices) {
    if (vertex.influenceCount == 0) ++loose;
    double sum = 0.0;
    bool negative = false;
    for (uint32_t i = 0; i < vertex.influenceCount; ++i) {
      const double weight = static_cast<double>(mesh.influences[vertex.firstInfluence + i].weight);
      sum += weight;
      negative |= weight < -kWeightTolerance;
    }
    if (vertex.influenceCount > 0 && (negative || std::abs(sum - 1.0) > kWeightTolerance)) ++wrong;
  }
  const std::string file = mesh.name + ".cmf",
                    of = " of " + std::to_string(mesh.vertices.size()) + " vertices ";
  if (loose > 0) {
    AddProblem(findings, "no-influence", Subject::Member, file,
               std::to_string(loose) + of + "belong to no bone and stay behind when the actor moves",
               "paint weights for them in the model");
  }
  if (wrong > 0) {
    AddProblem(findings, "weight-sum", Subject::Member, file,
               std::to_string(wrong) + of + "have weights that do not add up to 1",
               "normalise the weights in the model");
  }
}

void CheckPlaces(const Actor& actor, Findings& findings) {
  for (const Mesh* mesh : FindMeshesAway(actor)) {
    AddProblem(findings, "mesh-away", Subject::Member, mesh->name + ".cmf",
               "stands farther from its bones than the rest of the model is large", kCheckBindPose);
  }
}

}  // namespace

void CheckMeshes(const Actor& actor, Findings& findings) {
  for (const Mesh& mesh : actor.meshes) {
    if (!actor.skeleton.bones.empty()) CheckWeights(mesh, findings);
  }
  const BoneDistance distance = MeasureBoneDistance(actor);
  if (!IsAway(distance)) return CheckPlaces(actor, findings);
  const int percent = static_cast<int>(std::lround(std::min(distance.median, 1e4) * 100.0));
  AddProblem(findings, "mesh-away", Subject::File, "",
             "the meshes stand away from their bones, " + std::to_string(percent) +
                 " % of the model's size in the middle",
             kCheckBindPose);
}

}  // namespace actor
