// SPDX-License-Identifier: MIT
#include "scene/gltf/vertex_weld.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace scene::gltf {
namespace {

/// Both zeros are one number.
uint32_t ToWord(float number) { return std::bit_cast<uint32_t>(number == 0.0f ? 0.0f : number); }

}  // namespace

VertexWeld::VertexWeld(const AccessorReader& accessors, Budget& budget, size_t influenceSets,
                       size_t jointCount, std::span<const double> shapeWeights, ControlPoints& points)
    : accessors_(accessors),
      budget_(budget),
      influenceSets_(influenceSets),
      shapeWeights_(shapeWeights),
      points_(points),
      key_(kPositionWords + 2 * InfluenceSet::kSize * influenceSets),
      otherKey_(key_.size()),
      influenceCounts_(jointCount) {
  for (uint64_t i = 0; i < key_.size(); ++i) secrets_.push_back(static_cast<uint32_t>(base::MixedHash()(i)));
}

VertexNumbers VertexWeld::PointsOf(const Primitive& primitive) {
  std::vector<uint32_t> accessors{primitive.position, primitive.normal};
  for (const auto* list : {&primitive.joints, &primitive.weights, &primitive.targets}) {
    accessors.push_back(kNone);
    accessors.insert(accessors.end(), list->begin(), list->end());
  }
  if (accessors == sharedAccessors_) return shared_;
  Vertices vertices = ReadVertices(primitive);
  const uint64_t count = vertices.positions.size();
  constexpr uint64_t kMost = std::numeric_limits<int32_t>::max() / 3;
  if (count > kMost - vertexCount_) throw Fault("a mesh has too many vertices");
  vertices.first = static_cast<uint32_t>(vertexCount_);
  vertexCount_ += count;
  const uint64_t before = budget_.Used();
  budget_.Take(count * 12 + NumberTable::MostMemory(count));
  const uint32_t known = points_.size();
  points_.Add(std::move(vertices));
  shared_ = std::make_shared<const FbxArray<int32_t>>(Weld());
  sharedAccessors_ = std::move(accessors);
  budget_.ReturnTo(before);
  const uint64_t added = points_.size() - known;
  budget_.Take(count * 4 + added * 8 + NumberTable::MostMemory(added));
  return shared_;
}

Vertices VertexWeld::ReadVertices(const Primitive& primitive) const {
  Vertices vertices;
  vertices.positions = ReadPositions(primitive);
  if (primitive.normal != kNone && accessors_.CountOf(primitive.normal) == vertices.positions.size())
    vertices.normals = accessors_.Floats(primitive.normal, 3);
  const size_t sets = std::min(primitive.joints.size(), primitive.weights.size());
  for (size_t set = 0; set < std::min(sets, influenceSets_); ++set) {
    vertices.influences.push_back(
        {accessors_.Integers(primitive.joints[set], 4), accessors_.Floats(primitive.weights[set], 4)});
  }
  return vertices;
}

FloatElements VertexWeld::ReadPositions(const Primitive& primitive) const {
  FloatElements positions = accessors_.Floats(primitive.position, 3);
  for (size_t i = 0; i < std::min(primitive.targets.size(), shapeWeights_.size()); ++i) {
    if (shapeWeights_[i] == 0.0 || primitive.targets[i] == kNone) continue;
    const FloatElements offsets = accessors_.Floats(primitive.targets[i], 3);
    const auto weight = static_cast<float>(shapeWeights_[i]);
    budget_.Take(positions.size() * 3 * sizeof(float));
    positions = FloatElements::Make(positions.size(), 3, [&](size_t element, size_t k) {
      const float offset = element < offsets.size() ? weight * offsets.At(element, k) : 0.0f;
      return positions.At(element, k) + offset;
    });
  }
  return positions;
}

FbxArray<int32_t> VertexWeld::Weld() {
  const Vertices& vertices = points_.Last();
  const size_t count = vertices.positions.size();
  points_.Expect(count);
  table_.Expect(count, [&](uint32_t point) { return DigestOf(point); });
  FbxArray<int32_t> numbers;
  int32_t* const to = numbers.Allocate(count);
  const auto digestAt = [&](size_t vertex) {
    ReadKey(vertices, vertex, key_);
    CountInfluences();
    return Digest(key_);
  };
  table_.ForEachAhead(count, digestAt, [&](size_t vertex, uint64_t digest) {
    to[vertex] = static_cast<int32_t>(PointOf(vertices, vertex, digest));
  });
  return numbers;
}

uint32_t VertexWeld::PointOf(const Vertices& vertices, size_t vertex, uint64_t digest) {
  for (bool isBack = false;; isBack = true) {
    const uint32_t point = table_.NumberOf(digest + (isBack ? 1 : 0), [&](uint32_t other) {
      return isBack_[other] == isBack && IsEqual(other, vertices, vertex);
    });
    if (point == points_.size()) {
      points_.AddPoint(vertex);
      isBack_.push_back(isBack);
      return point;
    }
    if (isBack || !IsOpposed(point, vertices, vertex)) return point;
  }
}

/// Of all vertices, as it is not known yet which of them are one point.
void VertexWeld::CountInfluences() {
  for (size_t i = kPositionWords; i < key_.size(); i += 2) {
    if (key_[i + 1] != 0 && key_[i] < influenceCounts_.size()) ++influenceCounts_[key_[i]];
  }
}

void VertexWeld::ReadKey(const Vertices& vertices, size_t vertex, std::vector<uint32_t>& key) {
  auto word = key.begin();
  for (size_t axis = 0; axis < 3; ++axis) *word++ = ToWord(vertices.positions.At(vertex, axis));
  *word++ = 0;
  for (const InfluenceSet& set : vertices.influences) {
    set.ForEach(vertex, [&](uint32_t joint, float weight) {
      *word++ = joint;
      *word++ = std::bit_cast<uint32_t>(weight);
    });
  }
  std::fill(word, key.end(), 0);
}

/// A sum of products of two words each, to which numbers are added that no file can know.
uint64_t VertexWeld::Digest(const std::vector<uint32_t>& key) const {
  uint64_t sum = 0;
  for (size_t i = 0; i < key.size(); i += 2)
    sum += uint64_t{key[i] + secrets_[i]} * (key[i + 1] + secrets_[i + 1]);
  return sum;
}

uint64_t VertexWeld::DigestOf(uint32_t point) {
  points_.UseVertex(point, [&](const Vertices& list, size_t vertex) { ReadKey(list, vertex, key_); });
  return Digest(key_) + (isBack_[point] ? 1 : 0);
}

bool VertexWeld::IsEqual(uint32_t point, const Vertices& vertices, size_t vertex) {
  bool isEqual = false;
  points_.UseVertex(point, [&](const Vertices& own, size_t ownVertex) {
    for (size_t axis = 0; axis < 3; ++axis) {
      if (own.positions.At(ownVertex, axis) != vertices.positions.At(vertex, axis)) return;
    }
    ReadKey(own, ownVertex, otherKey_);
    ReadKey(vertices, vertex, key_);
    isEqual = key_ == otherKey_;
  });
  return isEqual;
}

/// Two sides of a sheet, as hair and skirts have them, are not one surface.
bool VertexWeld::IsOpposed(uint32_t point, const Vertices& vertices, size_t vertex) const {
  constexpr float kOpposed = -0.999f;
  bool isOpposed = false;
  points_.UseVertex(point, [&](const Vertices& own, size_t ownVertex) {
    if (own.normals.size() == 0 || vertices.normals.size() == 0) return;
    const auto product = [&](size_t k) {
      return own.normals.At(ownVertex, k) * vertices.normals.At(vertex, k);
    };
    isOpposed = product(0) + product(1) + product(2) < kOpposed;
  });
  return isOpposed;
}

}  // namespace scene::gltf
