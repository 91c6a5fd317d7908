// SPDX-License-Identifier: MIT
#include "scene/math/node_transform.h"

namespace scene {
namespace {

KFbxXMatrix OrderedRotation(const KFbxVector4& angles, int order) {
  static constexpr size_t kAxes[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 2, 0}, {1, 0, 2}, {2, 0, 1}, {2, 1, 0}};
  if (order <= 0 || order > 5) return KFbxXMatrix::Rotation(angles);
  KFbxXMatrix rotation;
  for (const size_t axis : kAxes[order]) {
    KFbxVector4 single;
    single[axis] = angles[axis];
    rotation = KFbxXMatrix::Rotation(single) * rotation;
  }
  return rotation;
}

KFbxXMatrix LocalRotation(const TransformProperties& node) {
  // Without the active flag order, pre- and post-rotation are dead settings.
  if (!node.rotationActive || node.rotationSpaceForLimitOnly) return KFbxXMatrix::Rotation(node.rotation);
  return KFbxXMatrix::Rotation(node.preRotation) * OrderedRotation(node.rotation, node.rotationOrder) *
         KFbxXMatrix::Rotation(node.postRotation).Inverse();
}

KFbxVector4 InverseScale(const KFbxVector4& scale) {
  KFbxVector4 inverse;
  for (size_t i = 0; i < 3; ++i) inverse[i] = scale[i] != 0.0 ? 1.0 / scale[i] : 1.0;
  return inverse;
}

}  // namespace

WorldTransform EvaluateWorldTransform(const TransformProperties& node, const WorldTransform& parent) {
  const auto translation = [](const KFbxVector4& t) { return KFbxXMatrix::Translation(t); };
  const KFbxXMatrix rotation = LocalRotation(node);
  const KFbxXMatrix scaling = KFbxXMatrix::Scaling(node.scaling);
  const KFbxXMatrix local = translation(node.translation) * translation(node.rotationOffset) *
                            translation(node.rotationPivot) * rotation * translation(-node.rotationPivot) *
                            translation(node.scalingOffset) * translation(node.scalingPivot) * scaling *
                            translation(-node.scalingPivot);
  WorldTransform world;
  world.localScale = node.scaling;
  world.rotation = parent.rotation * rotation;
  switch (node.inheritType) {
    case InheritType::RrSs:
      world.scale = parent.scale * scaling;
      break;
    case InheritType::Rrs:
      world.scale = parent.scale * KFbxXMatrix::Scaling(InverseScale(parent.localScale)) * scaling;
      break;
    case InheritType::RSrs:
      world.scale = rotation.Inverse() * parent.scale * rotation * scaling;
      break;
  }
  world.global = world.rotation * world.scale;
  world.global.SetT(parent.global.MultT(local.GetT()));
  return world;
}

}  // namespace scene
