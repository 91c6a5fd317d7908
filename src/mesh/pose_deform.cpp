// SPDX-License-Identifier: MIT
#include "mesh/pose_deform.h"

#include <algorithm>
#include <optional>
#include <span>
#include <vector>

#include "scene/model/mesh.h"
#include "skeleton/bind_pose.h"
#include "skeleton/rigid_meshes.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

using scene::KFbxCluster;
using scene::KFbxMesh;
using scene::KFbxNode;
using scene::KFbxVector4;
using scene::KFbxXMatrix;
using ELinkMode = scene::KFbxCluster::ELinkMode;

KFbxVector4 PointAt(std::span<const double> points, size_t i) {
  return {points[3 * i], points[3 * i + 1], points[3 * i + 2]};
}

void SetPoint(std::span<double> points, size_t i, const KFbxVector4& p) {
  for (size_t axis = 0; axis < 3; ++axis) points[3 * i + axis] = p[axis];
}

void TransformPoints(const KFbxXMatrix& m, std::span<double> points) {
  for (size_t i = 0; i < points.size() / 3; ++i) SetPoint(points, i, m.MultT(PointAt(points, i)));
}

/// Linear blend skinning of one mesh to the bind pose.
class SkinDeformation {
 public:
  /// @param meshPose  bind pose of the mesh's node
  SkinDeformation(const KFbxNode& node, const KFbxXMatrix& meshPose, const scene::KFbxScene& scene,
                  SkeletonState& skeleton)
      : scene_(scene),
        skeleton_(skeleton),
        mesh_(*node.GetMesh()),
        geometric_(node.GetGeometricTransform()),
        meshPose_(meshPose) {}

  /// Moves `points` from the mesh's own space into the world of the bind pose.
  void Apply(scene::FbxArray<double>& points) {
    const ELinkMode mode = LinkMode();
    if (mode == ELinkMode::eADDITIVE) return ApplyAdditive(points);
    const size_t count = points.size() / 3;
    std::vector<double> weightSum(count);
    scene::FbxArray<double> sum;
    std::fill_n(sum.Allocate(points.size()), points.size(), 0.0);
    ForEachPair(count, [&](const KFbxXMatrix& m, size_t i, double weight) {
      const KFbxVector4 moved = m.MultT(PointAt(points, i)) * weight;
      for (size_t axis = 0; axis < 3; ++axis) sum[3 * i + axis] += moved[axis];
      weightSum[i] += weight;
    });
    const KFbxXMatrix own = meshPose_ * geometric_;
    for (size_t i = 0; i < count; ++i) {
      const KFbxVector4 blended = PointAt(sum, i);
      if (weightSum[i] == 0.0) {
        SetPoint(sum, i, own.MultT(PointAt(points, i)));
      } else if (mode == ELinkMode::eNORMALIZE) {
        SetPoint(sum, i, blended * (1.0 / weightSum[i]));
      } else {
        SetPoint(sum, i, blended + own.MultT(PointAt(points, i)) * (1.0 - weightSum[i]));
      }
    }
    points = std::move(sum);
  }

 private:
  /// The first cluster of the first skin decides for all.
  ELinkMode LinkMode() const {
    const scene::KFbxSkin* skin = mesh_.GetSkin(0);
    return skin->GetClusterCount() > 0 ? skin->GetCluster(0)->GetLinkMode() : ELinkMode::eNORMALIZE;
  }

  /// Each cluster moves on what the ones before it left, by its weight.
  void ApplyAdditive(std::span<double> points) {
    const KFbxXMatrix toWorld = meshPose_ * geometric_;
    const KFbxXMatrix fromWorld = toWorld.Inverse();
    TransformPoints(toWorld, points);
    ForEachPair(points.size() / 3, [&](const KFbxXMatrix& m, size_t i, double weight) {
      const KFbxVector4 p = PointAt(points, i);
      SetPoint(points, i, (m * fromWorld).MultT(p) * weight + p * (1.0 - weight));
    });
  }

  /// Calls `visit` with the vertex transform, the control point
  /// and the weight of every pair of every cluster.
  template <typename Visit>
  void ForEachPair(size_t pointCount, const Visit& visit) {
    for (int s = 0; s < mesh_.GetSkinCount(); ++s) {
      const scene::KFbxSkin& skin = *mesh_.GetSkin(s);
      for (int c = 0; c < skin.GetClusterCount(); ++c) {
        const KFbxCluster& cluster = *skin.GetCluster(c);
        if (!cluster.GetLink()) continue;
        const KFbxXMatrix m = VertexTransform(cluster);
        const std::span<const int32_t> indices = cluster.GetControlPointIndices();
        const std::span<const double> weights = cluster.GetControlPointWeights();
        for (size_t k = 0; k < indices.size(); ++k) {
          const auto i = static_cast<size_t>(indices[k]);
          if (weights[k] != 0.0 && indices[k] >= 0 && i < pointCount) visit(m, i, weights[k]);
        }
      }
    }
  }

  /// From the mesh's own space to where the link takes it in the world of the bind pose.
  KFbxXMatrix VertexTransform(const KFbxCluster& cluster) {
    const KFbxXMatrix linkPose = BindWorld(*cluster.GetLink(), scene_, skeleton_);
    const KFbxXMatrix fromLink = cluster.GetTransformLinkMatrix().value_or(linkPose).Inverse();
    if (cluster.GetLinkMode() == ELinkMode::eADDITIVE && cluster.GetAssociateModel()) {
      const KFbxNode& associate = *cluster.GetAssociateModel();
      const KFbxXMatrix associateBind = cluster.GetTransformAssociateModelMatrix().value_or(
          PoseOf(associate, associate.GetGlobalFromDefaultTake()));
      return associateBind * PoseOf(associate, associateBind).Inverse() * linkPose * fromLink * meshPose_ *
             geometric_;
    }
    return linkPose * fromLink * cluster.GetTransformMatrix().value_or(meshPose_) * geometric_;
  }

  KFbxXMatrix PoseOf(const KFbxNode& node, const KFbxXMatrix& otherwise) {
    const int index = BindPoseIndex(&node, scene_, skeleton_);
    return index >= 0 ? BindMatrix(index, skeleton_) : otherwise;
  }

  const scene::KFbxScene& scene_;
  SkeletonState& skeleton_;
  const KFbxMesh& mesh_;
  const KFbxXMatrix& geometric_;
  const KFbxXMatrix meshPose_;
};

/// World transform of the mesh at bind time, or none for a mesh that keeps its own space.
std::optional<KFbxXMatrix> PlaceOfMesh(const KFbxNode& node, const ModelSource& model,
                                       SkeletonState& skeleton) {
  const bool keepsPlace = model.settings.repairs.attachRigid && !HasSkin(*node.GetMesh());
  if (!skeleton.hasExtractedBones) {
    return keepsPlace ? std::optional(node.GetGlobalFromDefaultTake()) : std::nullopt;
  }
  if (const int index = BindPoseIndex(&node, model.scene, skeleton); index >= 0)
    return BindMatrix(index, skeleton);
  if (keepsPlace) return BindWorld(node, model.scene, skeleton);
  model.status.Send(Notice::MeshNotInBindPose, node.GetName());
  return std::nullopt;
}

}  // namespace

scene::FbxArray<double> PoseControlPoints(KFbxNode& node, const ModelSource& model, SkeletonState& skeleton) {
  KFbxMesh& mesh = *node.GetMesh();
  const std::optional<KFbxXMatrix> pose = PlaceOfMesh(node, model, skeleton);
  scene::FbxArray<double> points = mesh.TakeControlPoints();
  if (pose) {
    for (const scene::KFbxShape& shape : mesh.GetShapes()) ApplyShape(shape, points);
  }
  if (pose && mesh.GetSkinCount() > 0 && skeleton.hasExtractedBones) {
    SkinDeformation(node, *pose, model.scene, skeleton).Apply(points);
    mesh.ReleaseSkins();
  } else {
    const KFbxXMatrix& geometric = node.GetGeometricTransform();
    TransformPoints(pose ? *pose * geometric : geometric, points);
  }
  if (skeleton.firstBoneNode && model.actorType != ActorType::None) {
    TransformPoints(skeleton.actorTurn, points);
    model.status.Send(Notice::PointsDeformed);
  }
  return points;
}

}  // namespace ts3d
