// SPDX-License-Identifier: MIT
#include "actor/actor_measure.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "actor/rigid_transform.h"

namespace actor {
namespace {

struct Carried {
  std::array<double, 3> sum{};
  size_t vertices = 0;
};

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
  const std::vector<Carried> carried = SumByBone(actor);
  std::vector<double> distances;
  for (size_t i = 0; i < carried.size(); ++i) {
    if (carried[i].vertices == 0 || diagonal == 0.0) continue;
    const auto count = static_cast<double>(carried[i].vertices);
    const std::array<double, 3> place = BindTransform(actor.skeleton.bones[i]).translation;
    const auto& sum = carried[i].sum;
    distances.push_back(
        std::hypot(sum[0] / count - place[0], sum[1] / count - place[1], sum[2] / count - place[2]) /
        diagonal);
  }
  if (distances.empty()) return {};
  const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
  std::nth_element(distances.begin(), middle, distances.end());
  return {distances.size(), *middle};
}

}  // namespace actor
