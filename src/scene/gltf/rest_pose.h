// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "scene/gltf/document.h"

namespace scene::gltf {

/// Where the nodes stand in the file as it is, whatever their skins say.
class RestPose {
 public:
  /// @param order  nodes, parents first
  /// @param world  what the world of the file becomes
  RestPose(const Document& document, std::span<const uint32_t> order, const KFbxXMatrix& world);

  /// World transform of a node.
  const KFbxXMatrix& Of(uint32_t node) const { return places_[node]; }
  /// Whether the joints stand to each other as they stood when the skin was bound.
  /// @param isBone       of each node: the other joints do not count
  /// @param inverseBind  of each joint
  /// @param reference    the joint that the others are compared with
  bool IsBindPose(std::span<const uint32_t> joints, const std::vector<bool>& isBone,
                  std::span<const KFbxXMatrix> inverseBind, size_t reference) const;
  /// Whether a joint at `a` would not be far from where it is at `b`: of the same size, turned by less than 60
  /// degrees and moved by less than the extent of all joints.
  bool IsNear(std::span<const uint32_t> joints, const KFbxXMatrix& a, const KFbxXMatrix& b) const;

 private:
  double ExtentOf(std::span<const uint32_t> joints) const;

  std::vector<KFbxXMatrix> places_;
  double unit_;  ///< length of a unit of the file
};

}  // namespace scene::gltf
