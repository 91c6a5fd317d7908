// SPDX-License-Identifier: MIT
#include "scene/model/node.h"

#include "scene/model/mesh.h"

namespace scene {

const KFbxMesh* KFbxNode::GetMesh() const {
  return IsMesh() ? dynamic_cast<const KFbxMesh*>(attribute_) : nullptr;
}

KFbxMesh* KFbxNode::GetMesh() { return IsMesh() ? dynamic_cast<KFbxMesh*>(attribute_) : nullptr; }

KFbxXMatrix KFbxNode::GetLocalFromDefaultTake() const {
  return parent_ ? parent_->global_.Inverse() * global_ : global_;
}

void KFbxNode::SetTransformProperties(const TransformProperties& properties) {
  properties_ = properties;
  geometric_ =
      KFbxXMatrix(properties.geometricTranslation, properties.geometricRotation, properties.geometricScaling);
}

}  // namespace scene
