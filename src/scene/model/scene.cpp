// SPDX-License-Identifier: MIT
#include "scene/model/scene.h"

#include <deque>

namespace scene {

KFbxScene::KFbxScene(std::string_view name) : KFbxObject(name) { Clear(); }

KFbxScene::~KFbxScene() = default;

void KFbxScene::Clear() {
  poses_.clear();
  objects_.clear();
  tree_.reset();
  licence_.clear();
  remarks_.clear();
  dataFiles_.clear();
  lostJoints_.clear();
  root_ = &Create<KFbxNode>("RootNode");
}

bool KFbxScene::HasDecimalCommas() const {
  if (!tree_ || !tree_->ascii) return false;
  // A vector of three numbers has more of them then, and so has the one number of a channel in old files.
  constexpr uint32_t kMostTexts = 4, kComponents = 3;
  for (uint32_t i = 0; i < tree_->records.size(); ++i) {
    const RecordRef property(tree_.get(), i);
    constexpr int kFirstWithoutChannels = 7000;
    if (property.Name() == "Default" && tree_->version < kFirstWithoutChannels && property.ValueCount() > 1) {
      return true;
    }
    if (property.Name() != "P" && property.Name() != "Property") continue;
    const std::string_view name = property.Text(0);
    if (name != "Lcl Translation" && name != "Lcl Rotation" && name != "Lcl Scaling") continue;
    uint32_t texts = 0;
    while (texts < kMostTexts && property.ValueAt(texts) &&
           property.ValueAt(texts)->kind == Value::Kind::Text) {
      ++texts;
    }
    if (property.ValueCount() > texts + kComponents) return true;
  }
  return false;
}

void KFbxScene::EvaluateTransforms() {
  struct Open {
    KFbxNode* node;
    int nextChild;
    WorldTransform world;
  };
  // Depth first with a list of its own: trees may be deeper than the call stack. It holds one entry for each
  // level, because a world transform is large.
  std::deque<Open> open;
  const auto evaluate = [&](KFbxNode& node, const WorldTransform& parent) {
    const WorldTransform world = EvaluateWorldTransform(node.GetTransformProperties(), parent);
    node.SetGlobalFromDefaultTake(world.global);
    if (node.GetChildCount() > 0) open.push_back({&node, 0, world});
  };
  evaluate(*root_, {});
  while (!open.empty()) {
    Open& last = open.back();
    KFbxNode& child = *last.node->GetChild(last.nextChild++);
    const WorldTransform world = last.world;
    if (last.nextChild == last.node->GetChildCount()) open.pop_back();
    evaluate(child, world);
  }
}

}  // namespace scene
