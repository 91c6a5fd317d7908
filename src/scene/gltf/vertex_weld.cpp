// SPDX-License-Identifier: MIT
#include "scene/gltf/vertex_weld.h"

#include <bit>
#include <cmath>

namespace scene::gltf {

/// Both zeros are one number.
uint32_t VertexWeld::ToWord(float number) { return std::bit_cast<uint32_t>(number == 0.0f ? 0.0f : number); }
float VertexWeld::ToFloat(uint32_t word) { return std::bit_cast<float>(word); }

KFbxVector4 VertexWeld::PositionOf(uint32_t point) const {
  const uint32_t* words = table_.At(point);
  const auto number = [&](size_t i) { return static_cast<double>(ToFloat(words[i])); };
  return {number(0), number(1), number(2)};
}

const std::vector<int32_t>& VertexWeld::PointsOf(const Primitive& primitive) {
  std::vector<uint32_t> accessors{primitive.position, primitive.normal};
  for (const auto* list : {&primitive.joints, &primitive.weights, &primitive.targets}) {
    accessors.push_back(kNone);
    accessors.insert(accessors.end(), list->begin(), list->end());
  }
  if (accessors == shared_) return points_;
  shared_ = std::move(accessors);
  points_ = {};
  const uint64_t before = budget_.Used();
  const Attributes attributes = ReadAttributes(primitive);
  const uint64_t vertices = attributes.positions.size() / 3;
  budget_.Take(WordTable::MostMemory(vertices, 3 + 2 * influences_ + 1) + vertices * 16);
  const uint32_t known = table_.size();
  Weld(attributes);
  budget_.ReturnTo(before);
  budget_.Take(WordTable::MostMemory(table_.size() - known, 3 + 2 * influences_ + 1) + vertices * 4);
  return points_;
}

VertexWeld::Attributes VertexWeld::ReadAttributes(const Primitive& primitive) const {
  Attributes attributes;
  attributes.positions = accessors_.Floats(primitive.position, 3);
  std::vector<float>& positions = attributes.positions;
  for (size_t i = 0; i < std::min(primitive.targets.size(), shapeWeights_.size()); ++i) {
    if (shapeWeights_[i] == 0.0 || primitive.targets[i] == kNone) continue;
    const std::vector<float> offsets = accessors_.Floats(primitive.targets[i], 3);
    for (size_t k = 0; k < std::min(positions.size(), offsets.size()); ++k)
      positions[k] += static_cast<float>(shapeWeights_[i]) * offsets[k];
  }
  if (primitive.normal != kNone && accessors_.CountOf(primitive.normal) == positions.size() / 3)
    attributes.normals = accessors_.Floats(primitive.normal, 3);
  if (influences_ > 0) ReadInfluences(primitive, positions.size() / 3, attributes);
  return attributes;
}

void VertexWeld::ReadInfluences(const Primitive& primitive, size_t vertexCount,
                                Attributes& attributes) const {
  const size_t sets = std::min(primitive.joints.size(), primitive.weights.size());
  if (sets == 1 && influences_ == 4) {
    attributes.joints = accessors_.Integers(primitive.joints[0], 4);
    attributes.weights = accessors_.Floats(primitive.weights[0], 4);
  } else {
    JoinSets(primitive, sets, vertexCount, attributes);
  }
  attributes.joints.resize(vertexCount * influences_);
  attributes.weights.resize(vertexCount * influences_);
  for (size_t i = 0; i < attributes.joints.size(); ++i) {
    float& weight = attributes.weights[i];
    weight = std::max(weight, 0.0f);
    if (weight == 0.0f) attributes.joints[i] = 0;
  }
}

void VertexWeld::JoinSets(const Primitive& primitive, size_t sets, size_t vertexCount,
                          Attributes& attributes) const {
  budget_.Take(uint64_t{vertexCount} * influences_ * 8);
  attributes.joints.resize(vertexCount * influences_);
  attributes.weights.resize(vertexCount * influences_);
  for (size_t set = 0; set < sets; ++set) {
    const std::vector<uint32_t> joints = accessors_.Integers(primitive.joints[set], 4);
    const std::vector<float> weights = accessors_.Floats(primitive.weights[set], 4);
    const size_t count = std::min({vertexCount, joints.size() / 4, weights.size() / 4});
    for (size_t i = 0; i < 4 * count; ++i) {
      const size_t at = i / 4 * influences_ + 4 * set + i % 4;
      attributes.weights[at] = weights[i];
      attributes.joints[at] = joints[i];
    }
  }
}

/// Two sides of a sheet, as hair and skirts have them, are not one surface.
bool VertexWeld::IsOpposed(uint32_t point, const float* normal) const {
  constexpr float kOpposed = -0.999f;
  const float* own = &normals_[3 * size_t{point}];
  return own[0] * normal[0] + own[1] * normal[1] + own[2] * normal[2] < kOpposed;
}

void VertexWeld::Weld(const Attributes& attributes) {
  const size_t count = attributes.positions.size() / 3;
  static constexpr float kNoNormal[3] = {};
  std::vector<uint32_t> key(3 + 2 * influences_ + 1);
  points_.resize(count);
  table_.Expect(count);
  normals_.reserve(normals_.size() + 3 * count);
  for (size_t i = 0; i < count; ++i) {
    for (size_t k = 0; k < 3; ++k) key[k] = ToWord(attributes.positions[3 * i + k]);
    for (size_t k = 0; k < influences_; ++k) {
      key[3 + k] = attributes.joints[i * influences_ + k];
      key[3 + influences_ + k] = ToWord(attributes.weights[i * influences_ + k]);
    }
    const float* normal = attributes.normals.empty() ? kNoNormal : &attributes.normals[3 * i];
    uint32_t point = 0;
    for (key.back() = 0; key.back() < 2; ++key.back()) {
      point = table_.NumberOf(key.data());
      if (3 * size_t{point} == normals_.size()) normals_.insert(normals_.end(), normal, normal + 3);
      if (!IsOpposed(point, normal)) break;
    }
    points_[i] = static_cast<int32_t>(point);
  }
}

}  // namespace scene::gltf
