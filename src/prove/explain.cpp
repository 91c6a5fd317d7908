// SPDX-License-Identifier: MIT
#include "prove/explain.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "prove/vertex_causes.h"

namespace prove {
namespace {

/// Explains the vertices of all meshes, one after the other.
class Explainer {
 public:
  Explainer(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches,
            const std::vector<BoneFacts>& facts, const Comparison& comparison, int mostInfluences)
      : skeleton_(skeleton),
        rig_(rig),
        matches_(matches),
        facts_(facts),
        comparison_(comparison),
        mostInfluences_(mostInfluences) {}

  Explanations Explain() {
    for (size_t m = 0; m < matches_.meshes.size(); ++m) {
      if (comparison_.WorstOf(m) > kLimit) ExplainMesh(m);
    }
    Explanations explanations{{}, FirstBone()};
    for (auto& [cause, found] : found_) {
      for (const int32_t node : found.nodes) {
        found.explanation.names.push_back(rig_.nodes[static_cast<size_t>(node)].node->GetName());
      }
      for (const size_t m : found.meshes) found.explanation.names.push_back(matches_.meshes[m].file->name);
      explanations.causes.push_back(std::move(found.explanation));
    }
    std::stable_sort(explanations.causes.begin(), explanations.causes.end(),
                     [](const auto& a, const auto& b) {
                       if (IsOurs(a.cause) != IsOurs(b.cause)) return IsOurs(a.cause);
                       return a.worst.error > b.worst.error;
                     });
    return explanations;
  }

 private:
  struct Found {
    Explanation explanation;
    std::vector<int32_t> nodes;
    std::vector<size_t> meshes;
  };

  void ExplainMesh(size_t m) {
    const VertexCauses causes(skeleton_, rig_, matches_, m, facts_, nodes_, comparison_.diagonal,
                              mostInfluences_);
    for (size_t v = 0; v < matches_.meshes[m].points.size(); ++v) {
      const float bind = comparison_.atRest[m][v], now = comparison_.now[m][v],
                  turned = comparison_.turned[m][v];
      const double most = std::max({bind, now, turned});
      if (!(most > kLimit)) continue;
      const auto kind = turned > kLimit || bind > kLimit ? Pose::Kind::Turned : Pose::Kind::Present;
      VertexCause cause = causes.Of(v, kind);
      if (cause.cause == Cause::None) {
        cause = {IsRounding(m, v) ? Cause::SinglePrecision : Cause::Unexplained, -1};
      }
      Add(cause, m, v, most);
    }
  }

  void Add(const VertexCause& cause, size_t m, size_t v, double error) {
    Found& found = found_[cause.cause];
    found.explanation.cause = cause.cause;
    found.explanation.worst.Take(error, m, v);
    ++found.explanation.vertices;
    if (WordsOf(cause.cause).isAboutBones && cause.node >= 0) {
      if (std::find(found.nodes.begin(), found.nodes.end(), cause.node) == found.nodes.end())
        found.nodes.push_back(cause.node);
    } else if (found.meshes.empty() || found.meshes.back() != m) {
      found.meshes.push_back(m);
    }
  }

  /// Whether single precision can be at fault: what is stored is rounded, or the error goes in double
  /// precision.
  bool IsRounding(size_t m, size_t v) {
    const MatchedMesh& mesh = matches_.meshes[m];
    const actor::Vector3& p = mesh.file->vertices[v].position;
    const int32_t bone = MainBone(*mesh.file, mesh.file->vertices[v]);
    const size_t depth = bone < 0 ? 1 : facts_[static_cast<size_t>(bone)].depth;
    const double reach = std::hypot(p[0], p[1], p[2]) + comparison_.diagonal;
    // Turning a place rounds several times, and each bone above adds its share.
    const double rounding = 0x1p-23 * static_cast<double>(depth + 3) * reach / comparison_.diagonal;
    return comparison_.WorstOf(m, v) <= rounding;
  }

  int32_t FirstBone() const {
    for (size_t b = 0; b < skeleton_.bones.size(); ++b) {
      if (comparison_.bones[b].error > kLimit) return static_cast<int32_t>(b);
    }
    return -1;
  }

  const actor::Skeleton& skeleton_;
  const ModelRig& rig_;
  const Matches& matches_;
  const std::vector<BoneFacts>& facts_;
  const NodeFacts nodes_{FindNodeFacts(rig_)};
  const Comparison& comparison_;
  int mostInfluences_;
  std::map<Cause, Found> found_;
};

}  // namespace

Explanations Explain(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches,
                     const std::vector<BoneFacts>& facts, const Comparison& comparison, int mostInfluences) {
  return Explainer(skeleton, rig, matches, facts, comparison, mostInfluences).Explain();
}

}  // namespace prove
