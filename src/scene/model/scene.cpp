// SPDX-License-Identifier: MIT
#include "scene/model/scene.h"

namespace scene {

KFbxScene::KFbxScene(std::string_view name) : KFbxObject(name) { Clear(); }

KFbxScene::~KFbxScene() = default;

void KFbxScene::Clear() {
  poses_.clear();
  objects_.clear();
  tree_.reset();
  root_ = &Create<KFbxNode>("RootNode");
}

void KFbxScene::EvaluateTransforms() {
  struct Pending {
    KFbxNode* node;
    WorldTransform parent;
  };
  // Depth first with a list of its own: trees may be deeper than the call stack.
  std::vector<Pending> pending;
  const auto addChildren = [&](const KFbxNode& node, const WorldTransform& world) {
    for (int i = node.GetChildCount(); i-- > 0;) pending.push_back({node.GetChild(i), world});
  };
  const WorldTransform rootWorld = EvaluateWorldTransform(root_->GetTransformProperties(), {});
  root_->SetGlobalFromDefaultTake(rootWorld.global);
  addChildren(*root_, rootWorld);
  while (!pending.empty()) {
    const Pending next = pending.back();
    pending.pop_back();
    const WorldTransform world = EvaluateWorldTransform(next.node->GetTransformProperties(), next.parent);
    next.node->SetGlobalFromDefaultTake(world.global);
    addChildren(*next.node, world);
  }
}

}  // namespace scene
