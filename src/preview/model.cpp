// SPDX-License-Identifier: MIT
#include "preview/model.h"

#include "actor/rigid_transform.h"
#include "core/stray_points.h"

namespace preview {
namespace {

template <size_t N>
void DropStrangeNumbers(std::array<float, N>& numbers) {
  for (float& number : numbers) {
    if (!std::isfinite(number)) number = 0.0f;
  }
}

template <size_t N>
bool AllFinite(const std::array<float, N>& numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [](float number) { return std::isfinite(number); });
}

void CleanSkeleton(actor::Skeleton& skeleton) {
  int32_t index = 0;
  for (actor::Bone& bone : skeleton.bones) {
    if (bone.parent < 0 || bone.parent >= index) bone.parent = -1;
    DropStrangeNumbers(bone.boneSpaceTranslation);
    DropStrangeNumbers(bone.boneSpaceRotation);
    ++index;
  }
}

/// Moves the influences of each vertex that lead to a bone together and leaves out the others.
void CleanInfluences(actor::Mesh& mesh, size_t boneCount) {
  std::vector<actor::Influence> kept;
  for (actor::Vertex& vertex : mesh.vertices) {
    const size_t first = std::min<size_t>(vertex.firstInfluence, mesh.influences.size());
    const size_t count = std::min<size_t>(vertex.influenceCount, mesh.influences.size() - first);
    vertex.firstInfluence = static_cast<uint32_t>(kept.size());
    for (size_t i = first; i < first + count; ++i) {
      const actor::Influence& influence = mesh.influences[i];
      const bool leadsToBone = influence.bone >= 0 && static_cast<size_t>(influence.bone) < boneCount;
      if (leadsToBone && std::isfinite(influence.weight)) kept.push_back(influence);
    }
    vertex.influenceCount = static_cast<uint32_t>(kept.size() - vertex.firstInfluence);
  }
  mesh.influences = std::move(kept);
}

void CleanMesh(actor::Mesh& mesh, size_t boneCount) {
  std::erase_if(mesh.faces, [&](const std::array<int32_t, 3>& face) {
    return std::any_of(face.begin(), face.end(), [&](int32_t corner) {
      return corner < 0 || static_cast<size_t>(corner) >= mesh.vertices.size() ||
             !AllFinite(mesh.vertices[static_cast<size_t>(corner)].position);
    });
  });
  for (actor::Vertex& vertex : mesh.vertices) {
    DropStrangeNumbers(vertex.position);
    DropStrangeNumbers(vertex.normal);
    DropStrangeNumbers(vertex.uv);
  }
  CleanInfluences(mesh, boneCount);
}

}  // namespace

actor::Actor Drawable(const actor::Actor& source) {
  actor::Actor drawable = source;
  CleanSkeleton(drawable.skeleton);
  for (actor::Mesh& mesh : drawable.meshes) CleanMesh(mesh, drawable.skeleton.bones.size());
  return drawable;
}

std::vector<Vector> BoneOrigins(const actor::Skeleton& skeleton) {
  std::vector<Vector> origins;
  for (const actor::Bone& bone : skeleton.bones) origins.push_back(actor::BindTransform(bone).translation);
  return origins;
}

std::vector<Vector> BulkPoints(const actor::Actor& drawable) {
  std::vector<actor::Vector3> used;
  for (const actor::Mesh& mesh : drawable.meshes) {
    std::vector<bool> isUsed(mesh.vertices.size());
    for (const auto& face : mesh.faces) {
      for (const int32_t corner : face) isUsed[static_cast<size_t>(corner)] = true;
    }
    for (size_t i = 0; i < isUsed.size(); ++i) {
      if (isUsed[i]) used.push_back(mesh.vertices[i].position);
    }
  }
  const ts3d::PartPoints whole = used;
  if (const auto bulk = ts3d::FindBulk({&whole, 1})) {
    std::erase_if(used, [&](const actor::Vector3& point) { return !bulk->Holds(point); });
  }
  std::vector<Vector> points(used.size());
  std::transform(used.begin(), used.end(), points.begin(), ToVector);
  return points;
}

base::Box ModelBounds(const actor::Actor& drawable) {
  base::Box bounds;
  for (const Vector& point : BulkPoints(drawable)) bounds.Add(point);
  if (bounds.IsEmpty()) {
    for (const Vector& origin : BoneOrigins(drawable.skeleton)) bounds.Add(origin);
  }
  if (bounds.IsEmpty()) bounds.Add({0, 0, 0});
  return bounds;
}

}  // namespace preview
