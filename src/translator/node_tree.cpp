// SPDX-License-Identifier: MIT
#include "translator/node_tree.h"

#include <set>

namespace translator {

NodeTree::NodeTree(const aiScene& scene, std::string_view jointRoot,
                   const std::set<std::string>& jointNames) {
  nodes_.push_back(scene.mRootNode);
  parents_.push_back(kNone);
  for (size_t i = 0; i < nodes_.size(); ++i) {
    const aiNode& node = *nodes_[i];
    numbers_[&node] = i;
    shownNames_.emplace_back(View(node.mName));
    AddName(i);
    for (unsigned child = 0; child < node.mNumChildren; ++child) {
      nodes_.push_back(node.mChildren[child]);
      parents_.push_back(i);
    }
  }
  isJoint_.resize(nodes_.size());
  MarkSkinJoints(scene);
  MarkOtherJoints(scene, jointRoot, jointNames);
}

/// Skins mean nodes by their names, and a mesh may be called like a joint.
void NodeTree::AddName(size_t node) {
  const auto [known, isNew] = names_.try_emplace(View(nodes_[node]->mName), node);
  if (!isNew && nodes_[known->second]->mNumMeshes > 0) known->second = node;
  if (nodes_[node]->mNumMeshes == 0) ++uses_[View(nodes_[node]->mName)];
}

size_t NodeTree::Find(std::string_view name) const {
  const auto found = names_.find(name);
  return found == names_.end() ? kNone : found->second;
}

aiMatrix4x4 NodeTree::PlaceOf(size_t node) const {
  aiMatrix4x4 place = nodes_[node]->mTransformation;
  while ((node = parents_[node]) != kNone) place = nodes_[node]->mTransformation * place;
  return place;
}

std::vector<size_t> NodeTree::ChildrenOf(size_t node) const {
  std::vector<size_t> children;
  for (unsigned i = 0; i < nodes_[node]->mNumChildren; ++i)
    children.push_back(numbers_.at(nodes_[node]->mChildren[i]));
  return children;
}

void NodeTree::MarkSkinJoints(const aiScene& scene) {
  for (unsigned mesh = 0; mesh < scene.mNumMeshes; ++mesh) {
    for (unsigned bone = 0; bone < scene.mMeshes[mesh]->mNumBones; ++bone) {
      const std::string_view name = View(scene.mMeshes[mesh]->mBones[bone]->mName);
      const size_t node = Find(name);
      if (node == kNone) continue;
      isJoint_[node] = true;
      isAmbiguous_ = isAmbiguous_ || uses_[name] > 1;
    }
  }
}

/// Ends of limbs have no weights, and so they are in no skin: what is below a joint is one as well, but for what
/// holds meshes, cameras and lights.
void NodeTree::MarkOtherJoints(const aiScene& scene, std::string_view jointRoot,
                               const std::set<std::string>& jointNames) {
  std::set<std::string_view> others;
  for (unsigned i = 0; i < scene.mNumCameras; ++i) others.insert(View(scene.mCameras[i]->mName));
  for (unsigned i = 0; i < scene.mNumLights; ++i) others.insert(View(scene.mLights[i]->mName));
  std::vector<char> holdsMesh(nodes_.size());
  for (size_t i = nodes_.size(); i-- > 1;) {
    holdsMesh[i] = holdsMesh[i] || nodes_[i]->mNumMeshes > 0;
    if (holdsMesh[i]) holdsMesh[parents_[i]] = true;
  }
  const size_t root = jointRoot == kSceneRoot ? 0 : jointRoot.empty() ? kNone : Find(jointRoot);
  for (size_t i = 1; i < nodes_.size(); ++i) {
    const size_t parent = parents_[i];
    const bool isBelow = parent == root || isJoint_[parent];
    const bool isCalledJoint = nodes_[i]->mNumMeshes == 0 && jointNames.contains(shownNames_[i]);
    if (isCalledJoint) isJoint_[i] = true;
    if (isBelow && !holdsMesh[i] && !others.contains(View(nodes_[i]->mName))) isJoint_[i] = true;
  }
}

}  // namespace translator
