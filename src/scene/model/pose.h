// SPDX-License-Identifier: MIT
#pragma once

#include <unordered_map>
#include <vector>

#include "scene/math/matrix.h"
#include "scene/model/object.h"

namespace scene {

class KFbxNode;

/// Transforms of nodes at one moment, usually of binding.
class KFbxPose : public KFbxObject {
 public:
  KFbxPose(std::string_view name, bool isBindPose) : KFbxObject(name), isBindPose_(isBindPose) {}

  bool IsBindPose() const { return isBindPose_; }
  int GetCount() const { return static_cast<int>(entries_.size()); }
  /// Index of the first entry of `node`, or -1.
  int Find(const KFbxNode* node) const {
    const auto found = byNode_.find(node);
    return found == byNode_.end() ? -1 : found->second;
  }
  const KFbxNode* GetNode(int i) const { return entries_[static_cast<size_t>(i)].node; }
  const KFbxXMatrix& GetMatrix(int i) const { return entries_[static_cast<size_t>(i)].matrix; }
  bool IsLocalMatrix(int i) const { return entries_[static_cast<size_t>(i)].isLocal; }

  // For whoever builds a scene.
  void Add(const KFbxNode& node, const KFbxXMatrix& matrix, bool isLocal) {
    byNode_.emplace(&node, GetCount());
    entries_.push_back({&node, matrix, isLocal});
  }

 private:
  struct Entry {
    const KFbxNode* node;
    KFbxXMatrix matrix;
    bool isLocal;
  };

  bool isBindPose_;
  std::vector<Entry> entries_;
  std::unordered_map<const KFbxNode*, int> byNode_;
};

}  // namespace scene
