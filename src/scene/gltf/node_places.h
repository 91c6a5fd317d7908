// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>

#include "scene/gltf/climb_limit.h"

namespace scene::gltf {

/// Where nodes stood when the skins were bound: skins say it of their joints, and the other nodes go along with
/// those above them.
class NodePlaces {
 public:
  /// @param world  what the world of the file becomes
  NodePlaces(const Document& document, const KFbxXMatrix& world, ClimbLimit& climb)
      : document_(document), world_(world), climb_(climb), fixed_(document.nodes.size()) {}

  bool IsFixed(uint32_t node) const { return fixed_[node].has_value(); }
  void Fix(uint32_t node, const KFbxXMatrix& place) { fixed_[node] = place; }
  /// World transform of a node as far as it is known.
  /// @throws Fault
  KFbxXMatrix Of(uint32_t node);
  /// World transforms of all nodes of the document.
  /// @param order  those that are shown, parents first; the others stand in the middle of the world
  std::vector<KFbxXMatrix> All(std::span<const uint32_t> order) const;

 private:
  const Document& document_;
  const KFbxXMatrix world_;
  ClimbLimit& climb_;
  std::vector<std::optional<KFbxXMatrix>> fixed_;
};

}  // namespace scene::gltf
