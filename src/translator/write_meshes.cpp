// SPDX-License-Identifier: MIT
#include "translator/write_meshes.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "translator/plain_material.h"

namespace translator {
namespace {

bool IsNear(const aiMatrix4x4& a, const aiMatrix4x4& b) {
  constexpr float kTolerance = 1e-4f;
  for (unsigned row = 0; row < 4; ++row) {
    for (unsigned column = 0; column < 4; ++column) {
      if (std::abs(a[row][column] - b[row][column]) > kTolerance * (1.0f + std::abs(a[row][column])))
        return false;
    }
  }
  return true;
}

struct Influence {
  uint16_t joint;
  float weight;
};

}  // namespace

MeshWriter::MeshWriter(const aiScene& scene, const NodeTree& tree, const FormatTraits& format, GlbData& data)
    : scene_(scene), tree_(tree), format_(format), data_(data) {}

std::vector<MeshWriter::Held> MeshWriter::Write(size_t node) {
  std::vector<Held> held;
  for (Group& group : GroupMeshes(tree_.At(node))) {
    const auto [known, isNew] = known_.try_emplace(group.meshes);
    if (isNew) known->second = WriteGroup(node, group);
    if (!known->second.empty()) held.push_back({known->second, group.meshes.front()});
  }
  return held;
}

std::vector<MeshWriter::Group> MeshWriter::GroupMeshes(const aiNode& node) const {
  std::vector<Group> groups;
  for (unsigned i = 0; i < node.mNumMeshes; ++i) {
    const aiMesh& mesh = *scene_.mMeshes[node.mMeshes[i]];
    auto group = std::find_if(groups.begin(), groups.end(), [&](const Group& g) { return Fits(mesh, g); });
    if (format_.hasApartMeshes || group == groups.end()) group = groups.insert(groups.end(), Group());
    group->meshes.push_back(node.mMeshes[i]);
    AddBones(mesh, group->skin);
  }
  return groups;
}

bool MeshWriter::Fits(const aiMesh& mesh, const Group& group) const {
  if ((mesh.mNumBones > 0) != !group.skin.joints.empty()) return false;
  for (unsigned i = 0; i < mesh.mNumBones; ++i) {
    const auto known = group.skin.places.find(tree_.Find(View(mesh.mBones[i]->mName)));
    if (known != group.skin.places.end() &&
        !IsNear(group.skin.inverseBind[known->second], mesh.mBones[i]->mOffsetMatrix)) {
      return false;
    }
  }
  return true;
}

void MeshWriter::AddBones(const aiMesh& mesh, Skin& skin) const {
  for (unsigned i = 0; i < mesh.mNumBones; ++i) {
    const size_t node = tree_.Find(View(mesh.mBones[i]->mName));
    if (node == NodeTree::kNone || !skin.places.try_emplace(node, skin.joints.size()).second) continue;
    skin.joints.push_back(node);
    skin.inverseBind.push_back(mesh.mBones[i]->mOffsetMatrix);
  }
}

/// What the matrices of the joints map from becomes the world, in place of the mesh's own space.
void MeshWriter::BindAt(size_t node, Skin& skin) const {
  aiMatrix4x4 fromRoot = tree_.At(0).mTransformation;
  const aiMatrix4x4 place = fromRoot.Inverse() * tree_.PlaceOf(node);
  for (aiMatrix4x4& matrix : skin.inverseBind) matrix = matrix * place;
}

/// The first skin lists the joints without weights as well. A matrix of zeros says that nothing is known of where they
/// were bound, so they stand where their parents take them.
void MeshWriter::AddWeightlessJoints(Skin& skin) {
  if (std::exchange(hasWeightless_, true)) return;
  for (size_t node = 0; node < tree_.Count(); ++node) {
    if (!tree_.IsJoint(node) || skin.places.contains(node)) continue;
    skin.joints.push_back(node);
    skin.inverseBind.push_back(aiMatrix4x4() * 0.0f);
  }
}

void MeshWriter::WriteJointsWithoutSkin() {
  Skin skin;
  AddWeightlessJoints(skin);
  if (!skin.joints.empty()) WriteSkin(skin);
}

/// @return empty when there is no triangle
std::string MeshWriter::WriteGroup(size_t node, Group& group) {
  std::string primitives;
  for (const unsigned mesh : group.meshes) {
    const std::string primitive = WritePrimitive(*scene_.mMeshes[mesh], group.skin);
    if (!primitive.empty()) primitives += (primitives.empty() ? "" : ",") + primitive;
  }
  if (primitives.empty()) return {};
  std::string members = "\"mesh\":" + std::to_string(meshes_.Add("{\"primitives\":[" + primitives + "]}"));
  if (!group.skin.joints.empty()) {
    if (format_.bindsInWorld) BindAt(node, group.skin);
    AddWeightlessJoints(group.skin);
    members += ",\"skin\":" + WriteSkin(group.skin);
  }
  return members;
}

std::string MeshWriter::WriteSkin(const Skin& skin) {
  constexpr size_t kMostJoints = 0xffff;
  if (skin.joints.size() > kMostJoints) throw std::runtime_error("a skin has too many joints");
  JsonList joints;
  for (const size_t node : skin.joints) joints.Add(std::to_string(node));
  std::vector<float> numbers;
  for (const aiMatrix4x4& matrix : skin.inverseBind) {
    for (unsigned i = 0; i < 16; ++i) numbers.push_back(matrix[i % 4][i / 4]);
  }
  const size_t matrices = data_.Add<float>(numbers, GlbData::kFloat, "MAT4", 16);
  return std::to_string(skins_.Add("{\"joints\":" + joints.Text() +
                                   ",\"inverseBindMatrices\":" + std::to_string(matrices) + "}"));
}

/// @return empty when there is no triangle
std::string MeshWriter::WritePrimitive(const aiMesh& mesh, const Skin& skin) {
  if (!mesh.HasPositions()) return {};
  std::vector<uint32_t> corners;
  for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
    const aiFace& face = mesh.mFaces[i];
    if (face.mNumIndices == 3) corners.insert(corners.end(), face.mIndices, face.mIndices + 3);
  }
  if (corners.empty()) return {};
  const std::span<const float> positions(&mesh.mVertices[0].x, size_t{3} * mesh.mNumVertices);
  std::string attributes = "\"POSITION\":" + std::to_string(data_.Add(positions, GlbData::kFloat, "VEC3", 3));
  for (unsigned set = 0; set < AI_MAX_NUMBER_OF_TEXTURECOORDS && mesh.HasTextureCoords(set); ++set)
    attributes += WriteCoordinates(mesh, set);
  if (!skin.joints.empty()) attributes += WriteInfluences(mesh, skin);
  const size_t indices = data_.Add<uint32_t>(corners, GlbData::kU32, "SCALAR", 1);
  return "{\"attributes\":{" + attributes + "},\"indices\":" + std::to_string(indices) +
         (IsPlain(*scene_.mMaterials[mesh.mMaterialIndex])
              ? "}"
              : ",\"material\":" + std::to_string(mesh.mMaterialIndex) + "}");
}

std::string MeshWriter::WriteCoordinates(const aiMesh& mesh, unsigned set) {
  std::vector<float> numbers;
  numbers.reserve(size_t{2} * mesh.mNumVertices);
  for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
    // Pictures begin at the bottom there, and at the top here.
    numbers.push_back(mesh.mTextureCoords[set][i].x);
    numbers.push_back(1.0f - mesh.mTextureCoords[set][i].y);
  }
  return ",\"TEXCOORD_" + std::to_string(set) +
         "\":" + std::to_string(data_.Add<float>(numbers, GlbData::kFloat, "VEC2", 2));
}

std::string MeshWriter::WriteInfluences(const aiMesh& mesh, const Skin& skin) {
  std::vector<std::vector<Influence>> influences(mesh.mNumVertices);
  for (unsigned b = 0; b < mesh.mNumBones; ++b) {
    const aiBone& bone = *mesh.mBones[b];
    const auto place = skin.places.find(tree_.Find(View(bone.mName)));
    if (place == skin.places.end()) continue;
    for (unsigned i = 0; i < bone.mNumWeights; ++i) {
      const auto& [vertex, weight] = bone.mWeights[i];
      if (vertex < mesh.mNumVertices && weight > 0.0f)
        influences[vertex].push_back({static_cast<uint16_t>(place->second), weight});
    }
  }
  // The strongest ones are kept of more than can be told.
  constexpr size_t kMost = 256, kInSet = 4;
  size_t most = 0;
  for (std::vector<Influence>& list : influences) {
    if (list.size() > kMost) {
      std::sort(list.begin(), list.end(), [](auto& a, auto& b) { return a.weight > b.weight; });
      list.resize(kMost);
    }
    most = std::max(most, list.size());
  }
  std::string attributes;
  for (size_t set = 0; set < (most + kInSet - 1) / kInSet; ++set) {
    std::vector<uint16_t> joints(kInSet * mesh.mNumVertices);
    std::vector<float> weights(joints.size());
    for (size_t i = 0; i < joints.size(); ++i) {
      const std::vector<Influence>& list = influences[i / kInSet];
      const size_t place = set * kInSet + i % kInSet;
      if (place >= list.size()) continue;
      joints[i] = list[place].joint;
      weights[i] = list[place].weight;
    }
    const std::string number = std::to_string(set);
    attributes += ",\"JOINTS_" + number +
                  "\":" + std::to_string(data_.Add<uint16_t>(joints, GlbData::kU16, "VEC4", 4)) +
                  ",\"WEIGHTS_" + number +
                  "\":" + std::to_string(data_.Add<float>(weights, GlbData::kFloat, "VEC4", 4));
  }
  return attributes;
}

}  // namespace translator
