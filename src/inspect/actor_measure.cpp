// SPDX-License-Identifier: MIT
#include "inspect/actor_measure.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "actor/rigid_transform.h"

namespace actor {
namespace {

constexpr size_t kSomeBones = 5, kManyBones = 15;
constexpr double kLargestSound = 0.04, kGross = 1.0;

struct Carried {
  Double3 sum{};
  size_t vertices = 0;
};

/// Distance of `point` from the line between `start` and `end`.
double FromLine(const Double3& point, const Double3& start, const Double3& end) {
  const Double3 line = base::Minus(end, start), from = base::Minus(point, start);
  const double square = base::Dot(line, line);
  const double along = square > 0.0 ? std::clamp(base::Dot(from, line) / square, 0.0, 1.0) : 0.0;
  return std::hypot(from[0] - along * line[0], from[1] - along * line[1], from[2] - along * line[2]);
}

double FromBox(const Double3& point, const Box& box) {
  Double3 gap;
  for (size_t axis = 0; axis < 3; ++axis) {
    gap[axis] = std::max({box.low[axis] - point[axis], point[axis] - box.high[axis], 0.0});
  }
  return std::hypot(gap[0], gap[1], gap[2]);
}

/// A mesh and how far it is from the nearest of the bones that it hangs on.
struct Placed {
  const Mesh* mesh;
  Box box;
  double distance;
};

/// The meshes that hang on bones, nearest first. `places` are those of the bones.
std::vector<Placed> PlaceMeshes(const Actor& actor, const std::vector<Double3>& places) {
  std::vector<Placed> placed;
  for (const Mesh& mesh : actor.meshes) {
    const Box box = BoundsOf(mesh);
    double nearest = std::numeric_limits<double>::infinity();
    std::vector<bool> seen(places.size());
    for (const Influence& influence : mesh.influences) {
      const auto bone = static_cast<size_t>(influence.bone);
      if (!(influence.weight > 0.0f) || seen[bone]) continue;
      seen[bone] = true;
      nearest = std::min(nearest, FromBox(places[bone], box));
    }
    if (std::isfinite(nearest)) placed.push_back({&mesh, box, nearest});
  }
  std::stable_sort(placed.begin(), placed.end(),
                   [](const Placed& a, const Placed& b) { return a.distance < b.distance; });
  return placed;
}

std::vector<Carried> SumByBone(const Actor& actor) {
  std::vector<Carried> carried(actor.skeleton.bones.size());
  for (const Mesh& mesh : actor.meshes) {
    for (const Vertex& vertex : mesh.vertices) {
      for (uint32_t i = 0; i < vertex.influenceCount; ++i) {
        const Influence& influence = mesh.influences[vertex.firstInfluence + i];
        if (influence.weight <= 0.5f) continue;
        Carried& bone = carried[static_cast<size_t>(influence.bone)];
        for (size_t axis = 0; axis < 3; ++axis) bone.sum[axis] += static_cast<double>(vertex.position[axis]);
        ++bone.vertices;
      }
    }
  }
  return carried;
}

}  // namespace

Box BoundsOf(const Mesh& mesh) {
  Box box;
  for (const Vertex& vertex : mesh.vertices) box.Add(base::ToVector(vertex.position));
  return box;
}

BoneDistance MeasureBoneDistance(const Actor& actor) {
  Box box;
  for (const Mesh& mesh : actor.meshes) {
    for (const Vertex& vertex : mesh.vertices) box.Add(base::ToVector(vertex.position));
  }
  const double diagonal = box.Diagonal();
  if (diagonal == 0.0) return {};
  const auto placeOf = [&](size_t bone) { return BindTransform(actor.skeleton.bones[bone]).translation; };
  const std::vector<Carried> carried = SumByBone(actor);
  std::vector<double> distances;
  for (size_t i = 0; i < carried.size(); ++i) {
    if (carried[i].vertices == 0) continue;
    const auto count = static_cast<double>(carried[i].vertices);
    const Double3 middle{carried[i].sum[0] / count, carried[i].sum[1] / count, carried[i].sum[2] / count};
    double nearest = FromLine(middle, placeOf(i), placeOf(i));
    for (const int32_t child : actor.skeleton.bones[i].children) {
      nearest = std::min(nearest, FromLine(middle, placeOf(i), placeOf(static_cast<size_t>(child))));
    }
    distances.push_back(nearest / diagonal);
  }
  if (distances.empty()) return {};
  const auto median = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
  std::nth_element(distances.begin(), median, distances.end());
  return {distances.size(), *median};
}

bool IsAway(const BoneDistance& distance) {
  return distance.bones >= kSomeBones &&
         distance.median > (distance.bones >= kManyBones ? kLargestSound : kGross);
}

std::vector<const Mesh*> FindMeshesAway(const Actor& actor) {
  std::vector<const Mesh*> away;
  if (actor.skeleton.bones.size() < kSomeBones) return away;
  std::vector<Double3> places;
  Box model;
  for (const Bone& bone : actor.skeleton.bones) {
    places.push_back(BindTransform(bone).translation);
    model.Add(places.back());
  }
  for (const Placed& placed : PlaceMeshes(actor, places)) {
    if (placed.distance > model.Diagonal()) {
      away.push_back(placed.mesh);
    } else {
      model.Add(placed.box.low);
      model.Add(placed.box.high);
    }
  }
  return away;
}

}  // namespace actor
