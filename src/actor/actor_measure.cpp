// SPDX-License-Identifier: MIT
#include "actor/actor_measure.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "actor/rigid_transform.h"

namespace actor {
namespace {

using Double3 = std::array<double, 3>;

constexpr size_t kSomeBones = 5, kManyBones = 15;
constexpr double kLargestSound = 0.04, kGross = 1.0;

struct Carried {
  Double3 sum{};
  size_t vertices = 0;
};

double Dot(const Double3& a, const Double3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
Double3 Minus(const Double3& a, const Double3& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }

/// Distance of `point` from the line between `start` and `end`.
double FromLine(const Double3& point, const Double3& start, const Double3& end) {
  const Double3 line = Minus(end, start), from = Minus(point, start);
  const double square = Dot(line, line);
  const double along = square > 0.0 ? std::clamp(Dot(from, line) / square, 0.0, 1.0) : 0.0;
  return std::hypot(from[0] - along * line[0], from[1] - along * line[1], from[2] - along * line[2]);
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

Box::Box() {
  low.fill(std::numeric_limits<double>::infinity());
  high.fill(-std::numeric_limits<double>::infinity());
}

void Box::Add(const Vector3& point) {
  for (size_t axis = 0; axis < 3; ++axis) {
    low[axis] = std::min(low[axis], static_cast<double>(point[axis]));
    high[axis] = std::max(high[axis], static_cast<double>(point[axis]));
  }
}

double Box::Diagonal() const {
  return IsEmpty() ? 0.0 : std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
}

Box BoundsOf(const Mesh& mesh) {
  Box box;
  for (const Vertex& vertex : mesh.vertices) box.Add(vertex.position);
  return box;
}

BoneDistance MeasureBoneDistance(const Actor& actor) {
  Box box;
  for (const Mesh& mesh : actor.meshes) {
    for (const Vertex& vertex : mesh.vertices) box.Add(vertex.position);
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

}  // namespace actor
