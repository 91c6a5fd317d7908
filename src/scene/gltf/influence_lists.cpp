// SPDX-License-Identifier: MIT
#include "scene/gltf/influence_lists.h"

namespace scene::gltf {

InfluenceLists::InfluenceLists(const ControlPoints& points, std::span<const uint32_t> counts) {
  size_t total = 0;
  for (const uint32_t count : counts) {
    begins_.push_back(total);
    total += count;
  }
  ends_ = begins_;
  int32_t* const toPoints = points_.Allocate(total);
  float* const toWeights = weights_.Allocate(total);
  points.ForEach([&](uint32_t point, const Vertices& list, size_t vertex) {
    for (const InfluenceSet& set : list.influences) {
      set.ForEach(vertex, [&](uint32_t joint, float weight) {
        if (weight == 0.0f || joint >= counts.size()) return;
        // The file may have been changed since they were counted.
        if (ends_[joint] - begins_[joint] == counts[joint]) return;
        toPoints[ends_[joint]] = static_cast<int32_t>(point);
        toWeights[ends_[joint]++] = weight;
      });
    }
  });
}

}  // namespace scene::gltf
