// SPDX-License-Identifier: MIT
#pragma once

#include "scene/math/matrix.h"

namespace scene {

/// How a node takes over its parent's scale.
enum class InheritType { RrSs = 0, RSrs = 1, Rrs = 2 };

/// The transform properties of a node as files give them; angles in degrees.
struct TransformProperties {
  KFbxVector4 translation, rotation, scaling{1, 1, 1};
  KFbxVector4 preRotation, postRotation;
  KFbxVector4 rotationOffset, rotationPivot, scalingOffset, scalingPivot;
  KFbxVector4 geometricTranslation, geometricRotation, geometricScaling{1, 1, 1};
  int rotationOrder = 0;  ///< 0 XYZ, 1 XZY, 2 YZX, 3 YXZ, 4 ZXY, 5 ZYX; the first letter is applied first
  bool rotationActive = false;
  bool rotationSpaceForLimitOnly = false;
  InheritType inheritType = InheritType::RrSs;
};

/// A node's world transform and the two parts of it that its children inherit separately.
struct WorldTransform {
  KFbxXMatrix global;
  KFbxXMatrix rotation;  ///< accumulated rotations
  KFbxXMatrix scale;     ///< accumulated scale and shear
  KFbxVector4 localScale{1, 1, 1};
};

/// World transform of a node below `parent`; pass a default WorldTransform for a child of the root.
WorldTransform EvaluateWorldTransform(const TransformProperties& node, const WorldTransform& parent);

}  // namespace scene
