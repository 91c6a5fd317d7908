// SPDX-License-Identifier: MIT
#include "scene/gltf/write_skin.h"

#include <algorithm>
#include <numeric>

namespace scene::gltf {

/// Begins a cluster; its control points and weights follow.
void SkinWriter::BeginCluster(int64_t bone, const KFbxXMatrix& transform, const KFbxXMatrix& link,
                              int64_t skin) {
  const int64_t id = links_.NewId();
  links_.Connect(id, skin);
  links_.Connect(bone, id);
  writer_.Begin("Deformer").Integer(id).Bytes("").Bytes("Cluster");
  WriteMatrix(writer_, "Transform", transform);
  WriteMatrix(writer_, "TransformLink", link);
}

int64_t SkinWriter::WriteSkinObject(int64_t mesh) {
  const int64_t id = links_.NewId();
  writer_.Begin("Deformer").Integer(id).Bytes("").Bytes("Skin").End();
  links_.Connect(id, mesh);
  return id;
}

void SkinWriter::WriteSkin(uint32_t index, Geometry& geometry, int64_t mesh) {
  const Skin& skin = document_.skins[index];
  const BoundSkin& bound = rig_.skins[index];
  const KFbxXMatrix fromWorld = bound.place.Inverse();
  const int64_t id = WriteSkinObject(mesh);
  for (size_t i = 0; i < skin.joints.size(); ++i) {
    const uint32_t joint = skin.joints[i];
    const size_t count = geometry.influences.MostOf(i);
    if (count == 0 || bones_.ids[joint] == kSceneRoot) continue;
    const KFbxXMatrix& link = bones_.places[joint];
    // Of a skin that does not fit the others each joint takes its points from another place.
    const KFbxXMatrix mesh2bone = link.Inverse() * rig_.places[joint] * bound.inverseBind[i] * fromWorld;
    BeginCluster(bones_.ids[joint], mesh2bone, link, id);
    writer_.Begin("Indexes")
        .Later(count, [&geometry, i] { return geometry.influences.TakePoints(geometry.points, i); })
        .End();
    writer_.Begin("Weights")
        .Later(count, [&geometry, i] { return geometry.influences.TakeWeights(geometry.points, i); })
        .End();
    writer_.End();
  }
}

void SkinWriter::WriteHold(uint32_t bone, const Geometry& geometry, int64_t mesh) {
  const size_t count = geometry.points.size();
  const KFbxXMatrix& link = bones_.places[bone];
  BeginCluster(bones_.ids[bone], link.Inverse(), link, WriteSkinObject(mesh));
  const auto makeAll = [count] {
    FbxArray<int32_t> points;
    points.Allocate(count);
    std::iota(points.begin(), points.end(), 0);
    return points;
  };
  const auto makeFull = [count] {
    FbxArray<double> weights;
    weights.Allocate(count);
    std::fill(weights.begin(), weights.end(), 1.0);
    return weights;
  };
  writer_.Begin("Indexes").Later(count, makeAll).End();
  writer_.Begin("Weights").Later(count, makeFull).End();
  writer_.End();
}

}  // namespace scene::gltf
