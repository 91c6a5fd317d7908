// SPDX-License-Identifier: MIT
#include "scene/gltf/vertex_weld.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace scene::gltf {
VertexWeld::VertexWeld(const AccessorReader& accessors, Budget& budget, size_t influenceSets,
                       std::span<const double> shapeWeights, ControlPoints& points)
    : accessors_(accessors),
      budget_(budget),
      influenceSets_(influenceSets),
      shapeWeights_(shapeWeights),
      points_(points) {
  for (uint32_t i = 0; i < 4; ++i) secrets_[i] = static_cast<uint32_t>(base::MixedHash()(uint64_t{i}));
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
  Bounds bounds;
  const auto digestAt = [&](size_t vertex) {
    const Quad position = vertices.positions.Words(vertex);
    bounds.Add(reinterpret_cast<FloatQuad>(position));
    return Digest(position);
  };
  table_.ForEachAhead(count, digestAt, [&](size_t vertex, uint64_t digest, uint64_t hash) {
    uint32_t point = points_.size();
    if (table_.TakeFirst(hash)) {
      points_.AddPoint(vertex);
    } else {
      point = PointOf(vertices, vertex, digest, hash);
    }
    to[vertex] = static_cast<int32_t>(point);
  });
  points_.SetBoundsOfLast(bounds);
  return numbers;
}

uint32_t VertexWeld::PointOf(const Vertices& vertices, size_t vertex, uint64_t digest, uint64_t hash) {
  const auto pointOf = [&](bool isBack, uint64_t hashOfSide) {
    return table_.NumberOf(hashOfSide,
                           [&](uint32_t other) { return IsEqual(other, isBack, vertices, vertex); });
  };
  uint32_t point = pointOf(false, hash);
  if (point < points_.size()) {
    if (!IsOpposed(point, vertices, vertex)) return point;
    point = pointOf(true, NumberTable::HashOf(digest + 1));
    if (point < points_.size()) return point;
    backs_.push_back(point);
  }
  points_.AddPoint(vertex);
  return point;
}

/// Of the position alone, as few vertices that share it differ. A sum of products of two words each, to which
/// numbers are added that no file can know.
uint64_t VertexWeld::Digest(const Quad& position) const {
  const Quad factors = position + secrets_;
  return uint64_t{factors[0]} * factors[1] + uint64_t{factors[2]} * factors[3];
}

uint64_t VertexWeld::DigestOf(uint32_t point) const {
  uint64_t digest = IsBack(point) ? 1 : 0;
  points_.UseVertex(
      point, [&](const Vertices& list, size_t vertex) { digest += Digest(list.positions.Words(vertex)); });
  return digest;
}

bool VertexWeld::IsBack(uint32_t point) const {
  return std::binary_search(backs_.begin(), backs_.end(), point);
}

bool VertexWeld::IsEqual(uint32_t point, bool isBack, const Vertices& vertices, size_t vertex) const {
  if (IsBack(point) != isBack) return false;
  bool isEqual = false;
  points_.UseVertex(point, [&](const Vertices& own, size_t ownVertex) {
    isEqual = IsSame(own.positions.Words(ownVertex), vertices.positions.Words(vertex));
    for (size_t set = 0; set < influenceSets_ && isEqual; ++set)
      isEqual = own.InfluencesOf(ownVertex, set) == vertices.InfluencesOf(vertex, set);
  });
  return isEqual;
}

/// Two sides of a sheet, as hair and skirts have them, are not one surface.
bool VertexWeld::IsOpposed(uint32_t point, const Vertices& vertices, size_t vertex) const {
  constexpr float kOpposed = -0.999f;
  bool isOpposed = false;
  points_.UseVertex(point, [&](const Vertices& own, size_t ownVertex) {
    if (own.normals.size() == 0 || vertices.normals.size() == 0) return;
    // Few bits make the normals of quantised files too long or too short.
    float product = 0, square = 0, ownSquare = 0;
    for (size_t k = 0; k < 3; ++k) {
      const float number = vertices.normals.At(vertex, k), ownNumber = own.normals.At(ownVertex, k);
      product += number * ownNumber;
      square += number * number;
      ownSquare += ownNumber * ownNumber;
    }
    isOpposed = product < kOpposed * std::sqrt(square * ownSquare);
  });
  return isOpposed;
}

}  // namespace scene::gltf
