// SPDX-License-Identifier: MIT
#include "scene/model/node.h"

#include "scene/model/mesh.h"

namespace scene {

KFbxMesh* KFbxNode::GetMesh() const {
  // A file may also have attributes that only say they are meshes.
  const bool saysSo =
      attribute_ && attribute_->GetAttributeType() == KFbxNodeAttribute::EAttributeType::eMESH;
  return saysSo ? dynamic_cast<KFbxMesh*>(attribute_) : nullptr;
}

KFbxXMatrix KFbxNode::GetLocalFromDefaultTake() const {
  return parent_ ? parent_->global_.Inverse() * global_ : global_;
}

void KFbxNode::SetTransformProperties(const TransformProperties& properties) {
  properties_ = properties;
  geometric_ =
      KFbxXMatrix(properties.geometricTranslation, properties.geometricRotation, properties.geometricScaling);
}

}  // namespace scene
