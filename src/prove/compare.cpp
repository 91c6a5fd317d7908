// SPDX-License-Identifier: MIT
#include "prove/compare.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <exception>
#include <limits>
#include <system_error>
#include <thread>

namespace prove {
namespace {

bool IsUsable(const Point& p) { return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]); }

std::vector<float>& ErrorsOf(Comparison& comparison, Pose::Kind kind, size_t mesh) {
  if (kind == Pose::Kind::Bind) return comparison.atRest[mesh];
  return kind == Pose::Kind::Present ? comparison.now[mesh] : comparison.turned[mesh];
}

/// Compares poses one after the other; each thread has one of its own.
class PoseComparer {
 public:
  PoseComparer(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches,
               const std::vector<std::vector<int32_t>>& mainBones, double diagonal)
      : skeleton_(skeleton), rig_(rig), matches_(matches), mainBones_(mainBones) {
    result.diagonal = diagonal;
    result.bones.resize(skeleton.bones.size());
    for (const MatchedMesh& mesh : matches.meshes) {
      const std::vector<float> none(mesh.points.size());
      result.atRest.push_back(none);
      result.now.push_back(none);
      result.turned.push_back(none);
    }
  }

  Worst Compare(const Pose& pose) {
    const std::vector<BoneMatrix<float>> bones = PosePackage<float>(skeleton_, rig_, pose);
    std::vector<Affine> worlds = PoseModel(rig_, pose);
    for (Affine& world : worlds) world = rig_.actorTurn * world;
    Worst worst;
    size_t model = std::numeric_limits<size_t>::max();
    for (size_t m = 0; m < matches_.meshes.size(); ++m) {
      const MatchedMesh& mesh = matches_.meshes[m];
      if (mesh.model != model) Deform(matches_.models[mesh.model], worlds, points_);
      model = mesh.model;
      CompareMesh(m, bones, ErrorsOf(result, pose.kind, m), worst);
    }
    return worst;
  }

  Comparison result;  ///< without `poses`

 private:
  void CompareMesh(size_t m, const std::vector<BoneMatrix<float>>& bones, std::vector<float>& errors,
                   Worst& worst) {
    const MatchedMesh& mesh = matches_.meshes[m];
    for (size_t v = 0; v < mesh.points.size(); ++v) {
      const Point& there = points_[mesh.points[v]];
      if (!IsUsable(there)) {
        ++result.unusable;
        continue;
      }
      const Point drawn = DrawVertex(*mesh.file, mesh.file->vertices[v], bones);
      // What is drawn nowhere is off by the whole model.
      const double error = IsUsable(drawn) ? Distance(drawn, there) / result.diagonal : 1.0;
      errors[v] = std::max(errors[v], static_cast<float>(error));
      worst.Take(error, m, v);
      if (const int32_t bone = mainBones_[m][v]; bone >= 0)
        result.bones[static_cast<size_t>(bone)].Take(error, m, v);
    }
  }

  const actor::Skeleton& skeleton_;
  const ModelRig& rig_;
  const Matches& matches_;
  const std::vector<std::vector<int32_t>>& mainBones_;
  std::vector<Point> points_;
};

void TakeMost(const std::vector<std::vector<float>>& from, std::vector<std::vector<float>>& into) {
  for (size_t m = 0; m < from.size(); ++m) {
    for (size_t v = 0; v < from[m].size(); ++v) into[m][v] = std::max(into[m][v], from[m][v]);
  }
}

/// Of equal errors the first in package order stays, whichever thread found it.
void Merge(const Comparison& from, Comparison& into) {
  TakeMost(from.atRest, into.atRest);
  TakeMost(from.now, into.now);
  TakeMost(from.turned, into.turned);
  for (size_t b = 0; b < into.bones.size(); ++b) {
    const Worst &a = from.bones[b], &old = into.bones[b];
    const bool isFirst =
        a.error == old.error && std::pair(a.mesh, a.vertex) < std::pair(old.mesh, old.vertex);
    if (a.error > old.error || isFirst) into.bones[b] = a;
  }
  into.unusable += from.unusable;
}

}  // namespace

double MeasureDiagonal(const ModelRig& rig, const Matches& matches) {
  const std::vector<Affine> worlds = BoundWorlds(rig);
  base::Box bounds;
  std::vector<Point> points;
  for (const MatchedMesh& mesh : matches.meshes) {
    Deform(matches.models[mesh.model], worlds, points);
    for (const uint32_t point : mesh.points) {
      if (IsUsable(points[point])) bounds.Add(points[point]);
    }
  }
  const double diagonal = bounds.Diagonal();
  return diagonal > 0.0 ? diagonal : 1.0;
}

Worst Comparison::Overall() const {
  Worst worst;
  for (const Worst& pose : poses) {
    if (pose.error > worst.error) worst = pose;
  }
  return worst;
}

double Comparison::WorstOf(size_t mesh, size_t vertex) const {
  return std::max({atRest[mesh][vertex], now[mesh][vertex], turned[mesh][vertex]});
}

double Comparison::WorstOf(size_t mesh) const {
  double worst = 0.0;
  for (size_t v = 0; v < atRest[mesh].size(); ++v) worst = std::max(worst, WorstOf(mesh, v));
  return worst;
}

template <typename Real>
std::vector<BoneMatrix<Real>> PosePackage(const actor::Skeleton& skeleton, const ModelRig& rig,
                                          const Pose& pose) {
  return PoseBones<Real>(skeleton, pose.kind == Pose::Kind::Present
                                       ? PlacesOf(skeleton, rig, PresentWorlds(rig))
                                       : SkeletonPlaces(skeleton, rig, pose.turns));
}
template std::vector<BoneMatrix<float>> PosePackage(const actor::Skeleton&, const ModelRig&, const Pose&);
template std::vector<BoneMatrix<double>> PosePackage(const actor::Skeleton&, const ModelRig&, const Pose&);

std::vector<Affine> PoseModel(const ModelRig& rig, const Pose& pose) {
  switch (pose.kind) {
    case Pose::Kind::Bind:
      return BoundWorlds(rig);
    case Pose::Kind::Present:
      return PresentWorlds(rig);
    default:
      return TurnedWorlds(rig, pose.turns);
  }
}

std::vector<DrawnMesh> DrawPose(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches,
                                const Pose& pose) {
  const std::vector<BoneMatrix<float>> bones = PosePackage<float>(skeleton, rig, pose);
  std::vector<Affine> worlds = PoseModel(rig, pose);
  for (Affine& world : worlds) world = rig.actorTurn * world;
  std::vector<DrawnMesh> drawn;
  std::vector<Point> points;
  for (const MatchedMesh& mesh : matches.meshes) {
    Deform(matches.models[mesh.model], worlds, points);
    DrawnMesh& next = drawn.emplace_back();
    for (size_t v = 0; v < mesh.points.size(); ++v) {
      next.model.push_back(points[mesh.points[v]]);
      next.package.push_back(DrawVertex(*mesh.file, mesh.file->vertices[v], bones));
    }
  }
  return drawn;
}

int32_t MainBone(const actor::Mesh& mesh, const actor::Vertex& vertex) {
  const auto begin = mesh.influences.begin() + static_cast<std::ptrdiff_t>(vertex.firstInfluence);
  const auto most = std::max_element(begin, begin + static_cast<std::ptrdiff_t>(vertex.influenceCount),
                                     [](const auto& a, const auto& b) { return a.weight < b.weight; });
  return vertex.influenceCount == 0 ? -1 : most->bone;
}

Comparison Compare(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches,
                   const std::vector<Pose>& poses, double diagonal, unsigned threads) {
  std::vector<std::vector<int32_t>> mainBones;
  for (const MatchedMesh& mesh : matches.meshes) {
    mainBones.emplace_back();
    for (const actor::Vertex& vertex : mesh.file->vertices)
      mainBones.back().push_back(MainBone(*mesh.file, vertex));
  }
  if (threads == 0) threads = std::max(1u, std::thread::hardware_concurrency());
  threads = std::min(threads, static_cast<unsigned>(poses.size()));
  std::vector<PoseComparer> comparers(threads, PoseComparer(skeleton, rig, matches, mainBones, diagonal));
  std::vector<Worst> worst(poses.size());
  std::vector<std::exception_ptr> failures(threads);
  std::atomic<size_t> next = 0;
  const auto work = [&](size_t thread) {
    try {
      for (size_t i = next++; i < poses.size(); i = next++) worst[i] = comparers[thread].Compare(poses[i]);
    } catch (...) {
      failures[thread] = std::current_exception();
    }
  };
  std::vector<std::thread> others;
  try {
    for (size_t i = 1; i < threads; ++i) others.emplace_back(work, i);
  } catch (const std::system_error&) {
    // No more threads to be had: those that are there do it all.
  }
  work(0);
  for (std::thread& other : others) other.join();
  for (const std::exception_ptr& failure : failures) {
    if (failure) std::rethrow_exception(failure);
  }
  Comparison comparison = std::move(comparers.front().result);
  for (size_t i = 1; i < threads; ++i) Merge(comparers[i].result, comparison);
  comparison.poses = std::move(worst);
  return comparison;
}

}  // namespace prove
