// SPDX-License-Identifier: MIT
#include "scene/gltf/influence_lists.h"

#include <algorithm>
#include <bit>

namespace scene::gltf {
namespace {

/// Calls `use` with the points, joints and bits of the weights of all influences.
template <class Use>
void ForEachInfluence(const ControlPoints& points, const Use& use) {
  points.ForEachList([&](const Vertices& list, std::span<const uint32_t> vertices, uint32_t point) {
    if (list.influences.size() == 1) {
      list.influences[0].ForEachOf(vertices, list.first, [&](size_t i, uint32_t joint, uint32_t weight) {
        use(point + static_cast<uint32_t>(i), joint, weight);
      });
      return;
    }
    for (const uint32_t vertex : vertices) {
      for (const InfluenceSet& set : list.influences) {
        set.ForEach(vertex - list.first,
                    [&](size_t, uint32_t joint, uint32_t weight) { use(point, joint, weight); });
      }
      ++point;
    }
  });
}

}  // namespace

InfluenceLists::InfluenceLists(const ControlPoints& points, size_t jointCount) {
  std::vector<size_t> counts(jointCount + 1);  // the last of joints that are not there
  ForEachInfluence(
      points, [&](uint32_t, uint32_t joint, uint32_t) { ++counts[std::min<size_t>(joint, jointCount)]; });
  joints_.resize(jointCount);
  for (size_t i = 0; i < jointCount; ++i) joints_[i].most = counts[i];
}

FbxArray<int32_t> InfluenceLists::TakePoints(const ControlPoints& points, size_t joint) {
  if (!joints_[joint].points) Make(points);
  return *std::exchange(joints_[joint].points, std::nullopt);
}

FbxArray<double> InfluenceLists::TakeWeights(const ControlPoints& points, size_t joint) {
  if (!joints_[joint].weights) Make(points);
  return *std::exchange(joints_[joint].weights, std::nullopt);
}

uint64_t InfluenceLists::Memory() const {
  uint64_t influences = 0;
  for (const Joint& joint : joints_) influences += joint.most;
  return influences * (sizeof(int32_t) + sizeof(double)) + joints_.size() * kJointMemory;
}

void InfluenceLists::Make(const ControlPoints& points) {
  struct Target {
    int32_t* points;
    double* weights;
    size_t count, most;
  };
  std::vector<Target> targets;
  for (Joint& joint : joints_) {
    int32_t* const list = joint.points.emplace().Allocate(joint.most);
    targets.push_back({list, joint.weights.emplace().Allocate(joint.most), 0, joint.most});
  }
  ForEachInfluence(points, [&](uint32_t point, uint32_t joint, uint32_t weight) {
    if (joint >= targets.size()) return;
    Target& target = targets[joint];
    // The file may have been changed since they were counted.
    if (target.count == target.most) return;
    target.points[target.count] = static_cast<int32_t>(point);
    target.weights[target.count++] = static_cast<double>(std::bit_cast<float>(weight));
  });
  for (size_t i = 0; i < joints_.size(); ++i) {
    joints_[i].points->Shorten(targets[i].count);
    joints_[i].weights->Shorten(targets[i].count);
  }
}

}  // namespace scene::gltf
