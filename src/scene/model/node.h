// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/math/matrix.h"
#include "scene/math/node_transform.h"
#include "scene/model/node_attribute.h"

namespace scene {

class KFbxMesh;
class KFbxSurfaceMaterial;

/// A node of the scene tree. Its default transforms are evaluated once, when the scene is built.
class KFbxNode : public KFbxObject {
 public:
  using KFbxObject::KFbxObject;

  const KFbxNode* GetParent() const { return parent_; }
  int GetChildCount() const { return static_cast<int>(children_.size()); }
  const KFbxNode* GetChild(int i) const { return children_[static_cast<size_t>(i)]; }
  KFbxNode* GetChild(int i) { return children_[static_cast<size_t>(i)]; }

  /// The first attribute connected to the node, or null. A null attribute is an attribute.
  const KFbxNodeAttribute* GetNodeAttribute() const { return attribute_; }
  /// The attribute when it is a mesh, else null.
  const KFbxMesh* GetMesh() const;
  KFbxMesh* GetMesh();
  /// Whether the attribute says that it is a mesh. Some files say so of what is none.
  bool IsMesh() const {
    return attribute_ && attribute_->GetAttributeType() == KFbxNodeAttribute::EAttributeType::eMESH;
  }
  bool IsSkeleton() const {
    return attribute_ && attribute_->GetAttributeType() == KFbxNodeAttribute::EAttributeType::eSKELETON;
  }

  /// Whether this node, or one above it, was hidden in the modelling program.
  bool IsHidden() const {
    for (const KFbxNode* node = this; node; node = node->parent_) {
      if (node->hidden_) return true;
    }
    return false;
  }

  /// Which bone of a human this is, as avatar files name them ("leftFoot"); empty when the file does not say.
  const KString& GetHumanBone() const { return humanBone_; }

  int GetMaterialCount() const { return static_cast<int>(materials_.size()); }
  KFbxSurfaceMaterial* GetMaterial(int i) const { return materials_[static_cast<size_t>(i)]; }

  /// World transform at the default take, without the geometric transform.
  const KFbxXMatrix& GetGlobalFromDefaultTake() const { return global_; }
  /// Parent-relative transform with pivots, pre- and post-rotation and inherit type applied, to be taken
  /// apart with GetT, GetR and GetS.
  KFbxXMatrix GetLocalFromDefaultTake() const;
  /// Applies to the points of the node's attribute only.
  const KFbxXMatrix& GetGeometricTransform() const { return geometric_; }

  // For whoever builds a scene.
  void AddChild(KFbxNode& child) {
    children_.push_back(&child);
    child.parent_ = this;
  }
  void SetNodeAttribute(KFbxNodeAttribute& attribute) {
    if (!attribute_) attribute_ = &attribute;
  }
  void AddMaterial(KFbxSurfaceMaterial& material) { materials_.push_back(&material); }
  void SetTransformProperties(const TransformProperties& properties);
  const TransformProperties& GetTransformProperties() const { return properties_; }
  void Hide() { hidden_ = true; }
  void SetHumanBone(std::string_view bone) { humanBone_ = bone; }
  void SetGlobalFromDefaultTake(const KFbxXMatrix& global) { global_ = global; }

 private:
  const KFbxNode* parent_ = nullptr;
  std::vector<KFbxNode*> children_;
  KFbxNodeAttribute* attribute_ = nullptr;
  std::vector<KFbxSurfaceMaterial*> materials_;
  bool hidden_ = false;
  KString humanBone_;
  TransformProperties properties_;
  KFbxXMatrix global_;
  KFbxXMatrix geometric_;
};

}  // namespace scene
