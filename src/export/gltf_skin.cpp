// SPDX-License-Identifier: MIT
#include "export/gltf_skin.h"

#include <algorithm>
#include <cstddef>
#include <map>

#include "actor/rigid_transform.h"

namespace actor {
namespace {

constexpr size_t kSetSize = 4, kMostInfluences = 16;

/// The influences of a vertex: each bone once, the strongest first, together 1.
std::vector<Influence> CleanInfluences(const Mesh& mesh, const Vertex& vertex) {
  std::map<int32_t, float> byBone;
  for (uint32_t i = 0; i < vertex.influenceCount; ++i) {
    const Influence& influence = mesh.influences[vertex.firstInfluence + i];
    if (influence.weight > 0.0f) byBone[influence.bone] += influence.weight;
  }
  std::vector<Influence> list;
  for (const auto& [bone, weight] : byBone) list.push_back({bone, weight});
  std::stable_sort(list.begin(), list.end(),
                   [](const Influence& a, const Influence& b) { return a.weight > b.weight; });
  list.resize(std::min(list.size(), kMostInfluences));
  double sum = 0.0;
  for (const Influence& influence : list) sum += static_cast<double>(influence.weight);
  for (Influence& influence : list) {
    influence.weight = static_cast<float>(static_cast<double>(influence.weight) / sum);
  }
  // What is too small for a float beside the others is no influence any more.
  std::erase_if(list, [](const Influence& influence) { return !(influence.weight > 0.0f); });
  if (list.empty()) list.push_back({0, 1.0f});
  return list;
}

template <class Joint>
void AddSets(const std::vector<std::vector<Influence>>& influences, size_t setCount, GltfBuffer& buffer,
             ts3d::JsonWriter& attributes) {
  for (size_t set = 0; set < setCount; ++set) {
    std::vector<Joint> joints;
    std::vector<float> weights;
    for (const std::vector<Influence>& list : influences) {
      for (size_t i = set * kSetSize; i < (set + 1) * kSetSize; ++i) {
        joints.push_back(i < list.size() ? static_cast<Joint>(list[i].bone) : Joint{});
        weights.push_back(i < list.size() ? list[i].weight : 0.0f);
      }
    }
    const std::string number = std::to_string(set);
    attributes.Member("JOINTS_" + number, buffer.Add<Joint>(joints, kSetSize, "VEC4", GltfBuffer::Vertices));
    attributes.Member("WEIGHTS_" + number,
                      buffer.Add<float>(weights, kSetSize, "VEC4", GltfBuffer::Vertices));
  }
}

}  // namespace

void AddBoneNodes(const Skeleton& skeleton, GltfList& nodes) {
  for (const Bone& bone : skeleton.bones) {
    RigidTransform place = BindTransform(bone);
    if (bone.parent >= 0) {
      place = BindTransform(skeleton.bones[static_cast<size_t>(bone.parent)]).Inverse() * place;
    }
    // Rounding may bring a component just beyond 1, which the format does not allow.
    for (double& part : place.rotation) part = std::clamp(part, -1.0, 1.0);
    ts3d::JsonWriter& node = nodes.Open();
    node.Member("name", bone.name);
    node.Member("translation", place.translation);
    node.Member("rotation", place.rotation);
    if (!bone.children.empty()) node.Member("children", bone.children);
    nodes.Close();
  }
}

void AddSkin(const Skeleton& skeleton, GltfBuffer& buffer, GltfList& skins) {
  std::vector<float> matrices;
  std::vector<size_t> joints;
  for (size_t i = 0; i < skeleton.bones.size(); ++i) {
    for (const double number : BindTransform(skeleton.bones[i]).Inverse().Matrix()) {
      matrices.push_back(static_cast<float>(number));
    }
    joints.push_back(i);
  }
  const size_t accessor = buffer.Add<float>(matrices, 16, "MAT4", GltfBuffer::None);
  ts3d::JsonWriter& skin = skins.Open();
  skin.Member("inverseBindMatrices", accessor);
  skin.Member("joints", joints);
  skins.Close();
}

void AddJoints(const Mesh& mesh, size_t boneCount, GltfBuffer& buffer, ts3d::JsonWriter& attributes) {
  std::vector<std::vector<Influence>> influences;
  size_t most = 1;
  for (const Vertex& vertex : mesh.vertices) {
    influences.push_back(CleanInfluences(mesh, vertex));
    most = std::max(most, influences.back().size());
  }
  const size_t setCount = (most + kSetSize - 1) / kSetSize;
  if (boneCount <= 256) {
    AddSets<uint8_t>(influences, setCount, buffer, attributes);
  } else {
    AddSets<uint16_t>(influences, setCount, buffer, attributes);
  }
}

}  // namespace actor
