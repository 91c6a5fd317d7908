// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "scene/math/vector.h"

namespace ts3d {

/// A bone of the skeleton tree. The tree hangs below an artificial root that is no bone itself.
struct BoneNode {
  int32_t id = -1;        ///< dense from 0 in the order of creation; -1 for the root
  bool weighted = false;  ///< some mesh gives the bone a weight above 0.05
  std::string name;
  scene::KFbxVector4 translation;    ///< relative to the parent
  scene::KFbxVector4 rotationEuler;  ///< degrees
  scene::KFbxQuaternion rotation;    ///< its scalar part is negated
  /// The inverse of the bone's bind transform.
  scene::KFbxVector4 boneSpaceTranslation;
  scene::KFbxVector4 boneSpaceRotationEuler;
  scene::KFbxQuaternion boneSpaceRotation;
  BoneNode* parent = nullptr;
  std::vector<BoneNode*> children;
};

/// Owns the bones of one skeleton and finds them. Lookups answer with the first hit in depth-first pre-order,
/// children in the order in which they were added.
class BoneTree {
 public:
  BoneTree();

  BoneNode& Root() { return *nodes_.front(); }
  const BoneNode& Root() const { return *nodes_.front(); }
  /// Adds a bone at the end of the parent's children and gives it the next identifier.
  BoneNode& AddChild(BoneNode& parent);

  /// All bones in depth-first pre-order, without the root.
  std::vector<const BoneNode*> PreOrder() const;
  int32_t BoneCount() const { return static_cast<int32_t>(nodes_.size()) - 1; }

  /// Names are compared byte by byte. "rootBone", the root's own name, finds the root.
  const BoneNode* FindByName(std::string_view name) const;
  /// Null unless 0 <= id < BoneCount().
  const BoneNode* FindById(int32_t id) const;
  /// Identifier of the bone `name`, or -1. -1 too for the root.
  int32_t IdByName(std::string_view name) const;
  /// Marks the bone as weighted; false when there is none.
  bool MarkById(int32_t id);

 private:
  std::vector<std::unique_ptr<BoneNode>> nodes_;  ///< the root, then by identifier
  /// First bone of each name. Built at the first lookup after the tree grew.
  mutable std::unordered_map<std::string_view, const BoneNode*> byName_;
};

}  // namespace ts3d
