// SPDX-License-Identifier: MIT
#include "scene/gltf/influence_lists.h"

#include <algorithm>
#include <bit>

namespace scene::gltf {

InfluenceLists::InfluenceLists(const ControlPoints& points, size_t jointCount) {
  std::vector<size_t> counts(jointCount + 1);  // the last of joints that are not there
  points.ForEach([&](uint32_t, const Vertices& list, size_t vertex) {
    for (const InfluenceSet& set : list.influences) {
      set.ForEach(vertex,
                  [&](size_t, uint32_t joint, uint32_t) { ++counts[std::min<size_t>(joint, jointCount)]; });
    }
  });
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
  points.ForEach([&](uint32_t point, const Vertices& list, size_t vertex) {
    for (const InfluenceSet& set : list.influences) {
      set.ForEach(vertex, [&](size_t, uint32_t joint, uint32_t weight) {
        if (joint >= targets.size()) return;
        Target& target = targets[joint];
        // The file may have been changed since they were counted.
        if (target.count == target.most) return;
        target.points[target.count] = static_cast<int32_t>(point);
        target.weights[target.count++] = static_cast<double>(std::bit_cast<float>(weight));
      });
    }
  });
  for (size_t i = 0; i < joints_.size(); ++i) {
    joints_[i].points->Shorten(targets[i].count);
    joints_[i].weights->Shorten(targets[i].count);
  }
}

}  // namespace scene::gltf
