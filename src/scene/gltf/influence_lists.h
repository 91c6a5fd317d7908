// SPDX-License-Identifier: MIT
#pragma once

#include <numeric>
#include <span>
#include <vector>

#include "scene/gltf/control_points.h"

namespace scene::gltf {

/// What the joints of a skin move, one joint after the other.
class InfluenceLists {
 public:
  InfluenceLists() = default;
  /// @param counts  how many points each joint moves at most
  InfluenceLists(const ControlPoints& points, std::span<const uint32_t> counts);

  std::span<const int32_t> PointsOf(size_t joint) const {
    return points_.View().subspan(begins_[joint], SizeOf(joint));
  }
  std::span<const float> WeightsOf(size_t joint) const {
    return weights_.View().subspan(begins_[joint], SizeOf(joint));
  }
  static uint64_t MostMemory(std::span<const uint32_t> counts) {
    return std::accumulate(counts.begin(), counts.end(), uint64_t{0}) * kInfluenceSize;
  }
  uint64_t Memory() const { return points_.size() * kInfluenceSize; }

 private:
  static constexpr uint64_t kInfluenceSize = sizeof(int32_t) + sizeof(float);

  size_t SizeOf(size_t joint) const { return ends_[joint] - begins_[joint]; }

  std::vector<size_t> begins_, ends_;  ///< of each joint
  FbxArray<int32_t> points_;
  FbxArray<float> weights_;
};

}  // namespace scene::gltf
