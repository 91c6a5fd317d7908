// SPDX-License-Identifier: MIT
#include "inspect/common_size.h"

#include <cmath>
#include <map>
#include <string_view>

#include "inspect/actor_measure.h"

namespace actor {

double GrowthBetween(const Actor& before, const Actor& after) {
  std::map<std::string_view, double> sizes;
  for (const Mesh& mesh : before.meshes) sizes.try_emplace(mesh.name, BoundsOf(mesh).Diagonal());
  double old = 0, now = 0;
  for (const Mesh& mesh : after.meshes) {
    const auto known = sizes.find(mesh.name);
    if (known == sizes.end()) continue;
    old += known->second;
    now += BoundsOf(mesh).Diagonal();
    sizes.erase(known);
  }
  const double growth = now / old;
  return old > 0 && now > 0 && std::isfinite(growth) ? growth : 1;
}

Actor Enlarged(const Actor& actor, double times) {
  Actor large;
  large.skeleton = actor.skeleton;
  large.meshes = actor.meshes;
  const auto enlarge = [times](Vector3& vector) {
    for (float& number : vector) number = static_cast<float>(times * static_cast<double>(number));
  };
  for (Bone& bone : large.skeleton.bones) {
    enlarge(bone.translation);
    enlarge(bone.boneSpaceTranslation);
  }
  for (Mesh& mesh : large.meshes) {
    for (Vertex& vertex : mesh.vertices) enlarge(vertex.position);
  }
  return large;
}

}  // namespace actor
