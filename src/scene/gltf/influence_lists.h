// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "scene/gltf/control_points.h"

namespace scene::gltf {

/// Which points each joint of a skin moves, and how much. The lists of all joints are made at once when the first
/// is taken, and again when one is taken twice.
class InfluenceLists {
 public:
  InfluenceLists() = default;
  /// @param jointCount  of the skin
  InfluenceLists(const ControlPoints& points, size_t jointCount);

  size_t MostOf(size_t joint) const { return joints_[joint].most; }
  FbxArray<int32_t> TakePoints(const ControlPoints& points, size_t joint);
  FbxArray<double> TakeWeights(const ControlPoints& points, size_t joint);
  /// Bytes of all lists.
  uint64_t Memory() const;
  /// Bytes of a joint that moves nothing.
  static constexpr uint64_t kJointMemory = 96;

 private:
  struct Joint {
    size_t most = 0;
    std::optional<FbxArray<int32_t>> points;
    std::optional<FbxArray<double>> weights;
  };
  static_assert(sizeof(Joint) <= kJointMemory);

  void Make(const ControlPoints& points);

  std::vector<Joint> joints_;
};

}  // namespace scene::gltf
