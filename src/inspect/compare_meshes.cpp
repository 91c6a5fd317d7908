// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

#include "inspect/actor_measure.h"
#include "inspect/compare_packages.h"
#include "inspect/pair_vertices.h"

namespace actor {
namespace {

/// How many vertices differ in one respect, and by how much at most.
struct Change {
  size_t vertices = 0;
  double most = 0;

  void Take(double difference, double least) {
    if (!(difference > least)) return;
    ++vertices;
    most = std::max(most, difference);
  }
};

using Weights = std::map<std::string_view, double>;

/// Weights of a vertex by the names of bones, which need not have the same numbers in both packages.
Weights WeightsOf(const Actor& actor, const Mesh& mesh, const Vertex& vertex) {
  Weights weights;
  for (uint32_t i = 0; i < vertex.influenceCount; ++i) {
    const Influence& influence = mesh.influences[vertex.firstInfluence + i];
    weights[actor.skeleton.bones[static_cast<size_t>(influence.bone)].name] +=
        static_cast<double>(influence.weight);
  }
  return weights;
}

double LargestDifference(const Weights& a, const Weights& b) {
  double most = 0;
  for (const auto& [bone, weight] : a) {
    const auto other = b.find(bone);
    most = std::max(most, std::abs(weight - (other == b.end() ? 0 : other->second)));
  }
  for (const auto& [bone, weight] : b) {
    if (!a.contains(bone)) most = std::max(most, std::abs(weight));
  }
  return most;
}

template <class Array>
double Distance(const Array& a, const Array& b) {
  double sum = 0;
  for (size_t i = 0; i < a.size(); ++i)
    sum += std::pow(static_cast<double>(a[i]) - static_cast<double>(b[i]), 2);
  return std::sqrt(sum);
}

class MeshComparison {
 public:
  MeshComparison(const Actor& before, const Actor& after, Differences& differences)
      : before_(before), after_(after), differences_(differences) {}

  void Compare(const Mesh& a, const Mesh& b) {
    name_ = a.name;
    if (a.threadId != b.threadId)
      Tell("mesh-thread",
           "material thread " + std::to_string(a.threadId) + " -> " + std::to_string(b.threadId));
    Count("vertices", a.vertices.size(), b.vertices.size());
    Count("faces", a.faces.size(), b.faces.size());
    Count("influences", a.influences.size(), b.influences.size());
    const double leastMove = kLeastPart * BoundsOf(a).Diagonal();
    // Nobody sees the order; it counts only where the vertices cannot be found again.
    std::vector<uint32_t> pairs;
    if (a.faces != b.faces) pairs = PairVertices(a, b, leastMove);
    if (pairs.empty()) {
      pairs.resize(a.vertices.size());
      std::iota(pairs.begin(), pairs.end(), 0u);
    }
    if (a.faces.size() == b.faces.size() && a.faces != b.faces && !HaveSameFaces(a, b, pairs))
      Tell("mesh-faces", "other faces");
    if (a.vertices.size() == b.vertices.size()) CompareVertices(a, b, pairs, leastMove);
  }

 private:
  static constexpr double kLeastPart = 1e-5;

  void Tell(const char* code, std::string text) {
    differences_.push_back({Part::Mesh, code, name_, std::move(text)});
  }

  void Count(const std::string& what, size_t before, size_t after) {
    if (before == after) return;
    const std::string change =
        (after > before ? "+" : "-") + std::to_string(std::max(after, before) - std::min(after, before));
    Tell("mesh-counts",
         what + " " + std::to_string(before) + " -> " + std::to_string(after) + " (" + change + ")");
  }

  void CompareVertices(const Mesh& a, const Mesh& b, const std::vector<uint32_t>& pairs, double leastMove) {
    constexpr double kLeastWeight = 1e-4, kLeastNormal = 1e-3;
    Change moved, normals, coordinates, weights;
    for (size_t i = 0; i < a.vertices.size(); ++i) {
      const Vertex &old = a.vertices[i], &now = b.vertices[pairs[i]];
      moved.Take(Distance(old.position, now.position), leastMove);
      normals.Take(Distance(old.normal, now.normal), kLeastNormal);
      coordinates.Take(Distance(old.uv, now.uv), kLeastPart);
      weights.Take(LargestDifference(WeightsOf(before_, a, old), WeightsOf(after_, b, now)), kLeastWeight);
    }
    const std::string of = " of " + std::to_string(a.vertices.size()) + " vertices ";
    const auto tell = [&](const Change& change, const char* code, const std::string& text) {
      if (change.vertices > 0)
        Tell(code, std::to_string(change.vertices) + of + text + ShortText(change.most));
    };
    tell(moved, "mesh-points", "moved, by up to ");
    tell(normals, "mesh-normals", "have other normals, off by up to ");
    tell(coordinates, "mesh-uvs", "have other texture coordinates, off by up to ");
    tell(weights, "mesh-weights", "have other weights, off by up to ");
  }

  const Actor& before_;
  const Actor& after_;
  Differences& differences_;
  std::string name_;
};

}  // namespace

void CompareMeshes(const Actor& before, const Actor& after, Differences& differences) {
  MeshComparison comparison(before, after, differences);
  MatchByName(Part::Mesh, "mesh", before.meshes, after.meshes, differences,
              [&](const Mesh& a, const Mesh& b) { comparison.Compare(a, b); });
}

}  // namespace actor
