// SPDX-License-Identifier: MIT
#include "skeleton/bone_node.h"

namespace ts3d {

BoneTree::BoneTree() {
  nodes_.push_back(std::make_unique<BoneNode>());
  nodes_.front()->name = "rootBone";
}

BoneNode& BoneTree::AddChild(BoneNode& parent) {
  const int32_t id = BoneCount();
  BoneNode& bone = *nodes_.emplace_back(std::make_unique<BoneNode>());
  bone.id = id;
  bone.parent = &parent;
  parent.children.push_back(&bone);
  byName_.clear();
  return bone;
}

std::vector<const BoneNode*> BoneTree::PreOrder() const {
  std::vector<const BoneNode*> order;
  order.reserve(nodes_.size());
  std::vector<const BoneNode*> pending(Root().children.rbegin(), Root().children.rend());
  while (!pending.empty()) {
    const BoneNode* bone = pending.back();
    pending.pop_back();
    order.push_back(bone);
    pending.insert(pending.end(), bone->children.rbegin(), bone->children.rend());
  }
  return order;
}

const BoneNode* BoneTree::FindByName(std::string_view name) const {
  if (byName_.empty()) {
    byName_.emplace(Root().name, &Root());
    for (const BoneNode* bone : PreOrder()) byName_.emplace(bone->name, bone);
  }
  const auto found = byName_.find(name);
  return found == byName_.end() ? nullptr : found->second;
}

const BoneNode* BoneTree::FindById(int32_t id) const {
  return id >= 0 && id < BoneCount() ? nodes_[static_cast<size_t>(id) + 1].get() : nullptr;
}

int32_t BoneTree::IdByName(std::string_view name) const {
  const BoneNode* bone = FindByName(name);
  return bone ? bone->id : -1;
}

bool BoneTree::MarkById(int32_t id) {
  if (!FindById(id)) return false;
  nodes_[static_cast<size_t>(id) + 1]->weighted = true;
  return true;
}

}  // namespace ts3d
