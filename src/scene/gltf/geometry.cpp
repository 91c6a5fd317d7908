// SPDX-License-Identifier: MIT
#include "scene/gltf/geometry.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>

#include "scene/gltf/vertex_weld.h"

namespace scene::gltf {
namespace {

/// Calls `visit` with the three places in the list of indices of every triangle.
template <class Visit>
void ForEachTriangle(uint32_t mode, size_t indexCount, const Visit& visit) {
  if (mode == kTriangles) {
    for (size_t i = 0; i + 2 < indexCount; i += 3) visit(i, i + 1, i + 2);
  } else if (mode == kStrip) {
    for (size_t i = 0; i + 2 < indexCount; ++i) visit(i, i + 1 + i % 2, i + 2 - i % 2);
  } else if (mode == kFan) {
    for (size_t i = 1; i + 1 < indexCount; ++i) visit(0, i, i + 1);
  }
}

class PrimitiveJoiner {
 public:
  PrimitiveJoiner(const Document& document, const AccessorReader& accessors, Budget& budget, const Node& node,
                  size_t jointCount)
      : document_(document),
        accessors_(accessors),
        budget_(budget),
        mesh_(document.meshes[node.mesh]),
        jointCount_(jointCount),
        weld_(accessors, budget, InfluenceSets(), node.weights.empty() ? mesh_.weights : node.weights),
        uvTable_(2) {}

  Geometry Join(const KFbxXMatrix& place) {
    const bool isMirrored = place.Determinant() < 0.0;
    for (const Primitive& primitive : mesh_.primitives) {
      if (primitive.HasSurface() && primitive.position != kNone) Add(primitive, isMirrored);
    }
    TakePoints(place);
    TakeCoordinates();
    if (jointCount_ > 0) TakeInfluences();
    return std::move(geometry_);
  }

 private:
  size_t InfluenceSets() const {
    size_t sets = 0;
    for (const Primitive& primitive : mesh_.primitives)
      sets = std::max(sets, std::min(primitive.joints.size(), primitive.weights.size()));
    return jointCount_ > 0 ? sets : 0;
  }

  void Add(const Primitive& primitive, bool isMirrored) {
    const std::vector<int32_t>& points = weld_.PointsOf(primitive);
    const std::vector<int32_t>* uvs = CoordinatesOf(primitive);
    const bool isIndexed = primitive.indices != kNone;
    const uint64_t before = budget_.Used();
    std::vector<uint32_t> indices;
    if (isIndexed) indices = accessors_.Integers(primitive.indices, 1);
    const size_t count = isIndexed ? indices.size() : points.size();
    const uint64_t triangles = primitive.mode == kTriangles ? count / 3 : count;
    budget_.Take(triangles * 28);
    Reserve(static_cast<size_t>(triangles));
    const auto place = FindMaterial(primitive.material);
    const auto vertexAt = [&](size_t i) { return isIndexed ? indices[i] : static_cast<uint32_t>(i); };
    // Also where nothing is: such triangles are dropped, and told, where damaged polygons are.
    constexpr int32_t kNowhere = 0x7ffffffe;
    const auto pointAt = [&](uint32_t vertex) { return vertex < points.size() ? points[vertex] : kNowhere; };
    ForEachTriangle(primitive.mode, count, [&](size_t a, size_t b, size_t c) {
      const uint32_t vertices[3] = {vertexAt(a), vertexAt(isMirrored ? c : b), vertexAt(isMirrored ? b : c)};
      // As strips have them where they turn.
      if (vertices[0] == vertices[1] || vertices[1] == vertices[2] || vertices[0] == vertices[2]) return;
      for (const uint32_t vertex : vertices) {
        geometry_.corners.push_back(pointAt(vertex));
        geometry_.uvIndices.push_back(uvs && vertex < uvs->size() ? (*uvs)[vertex] : -1);
      }
      geometry_.corners.back() = ~geometry_.corners.back();
      geometry_.polygonMaterials.push_back(place);
    });
    budget_.ReturnTo(before);
    budget_.Take(triangles * 28);
  }

  /// Room for further triangles, without giving up that lists grow by parts of their size.
  void Reserve(size_t triangles) {
    const auto grow = [](std::vector<int32_t>& list, size_t count) {
      if (list.capacity() < list.size() + count) list.reserve(std::max(list.size() + count, 2 * list.size()));
    };
    grow(geometry_.corners, 3 * triangles);
    grow(geometry_.uvIndices, 3 * triangles);
    grow(geometry_.polygonMaterials, triangles);
  }

  int32_t FindMaterial(uint32_t material) {
    std::vector<uint32_t>& known = geometry_.materials;
    const auto place = std::find(known.begin(), known.end(), material) - known.begin();
    if (place == std::ssize(known)) known.push_back(material);
    return static_cast<int32_t>(place);
  }

  /// Coordinate index of each vertex in the set of the primitive's material, or in the first; null without any.
  const std::vector<int32_t>* CoordinatesOf(const Primitive& primitive) {
    static const Material kPlain;
    const Material& material = primitive.material == kNone ? kPlain : document_.materials[primitive.material];
    const size_t set = material.image == kNone ? 0 : material.coordinates;
    if (set >= primitive.coordinates.size()) return nullptr;
    const auto [known, isNew] = uvIndices_.try_emplace({primitive.coordinates[set], material.transform});
    if (isNew) known->second = ReadCoordinates(primitive.coordinates[set], material.transform);
    return &known->second;
  }

  std::vector<int32_t> ReadCoordinates(uint32_t accessor, const CoordinateTransform& t) {
    const uint64_t before = budget_.Used();
    const std::vector<float> numbers = accessors_.Floats(accessor, 2);
    const size_t count = numbers.size() / 2;
    budget_.Take(count * sizeof(int32_t) + WordTable::MostMemory(count, 2));
    std::vector<int32_t> indices(count);
    uvTable_.Expect(count);
    const uint32_t knownPairs = uvTable_.size();
    for (size_t i = 0; i < count; ++i) {
      const auto u = static_cast<double>(numbers[2 * i]), v = static_cast<double>(numbers[2 * i + 1]);
      const auto word = [](double number) {
        return std::bit_cast<uint32_t>(static_cast<float>(number) + 0.0f);
      };
      // Pictures begin at the top there, and at the bottom here.
      const uint32_t pair[2] = {word(t[0] * u + t[1] * v + t[2]), word(1.0 - (t[3] * u + t[4] * v + t[5]))};
      indices[i] = static_cast<int32_t>(uvTable_.NumberOf(pair));
    }
    budget_.ReturnTo(before);
    budget_.Take(count * sizeof(int32_t) + WordTable::MostMemory(uvTable_.size() - knownPairs, 2));
    return indices;
  }

  void TakePoints(const KFbxXMatrix& place) {
    const auto count = static_cast<uint32_t>(weld_.PointCount());
    budget_.Take(uint64_t{count} * 12);
    geometry_.points.reserve(size_t{3} * count);
    for (uint32_t i = 0; i < count; ++i) {
      const KFbxVector4 point = place.MultT(weld_.PositionOf(i));
      for (size_t axis = 0; axis < 3; ++axis) geometry_.points.push_back(static_cast<float>(point[axis]));
    }
  }

  void TakeCoordinates() {
    if (uvTable_.size() == 0) geometry_.uvIndices.clear();
    budget_.Take(uint64_t{uvTable_.size()} * 8);
    geometry_.uvs.reserve(2 * size_t{uvTable_.size()});
    for (uint32_t i = 0; i < uvTable_.size(); ++i) {
      for (size_t k = 0; k < 2; ++k) geometry_.uvs.push_back(std::bit_cast<float>(uvTable_.At(i)[k]));
    }
  }

  void TakeInfluences() {
    geometry_.joints.resize(jointCount_);
    const auto count = static_cast<uint32_t>(weld_.PointCount());
    budget_.Take(uint64_t{count} * InfluenceSets() * 4 * 12);
    for (uint32_t i = 0; i < count; ++i) {
      weld_.ForEachInfluence(i, [&](uint32_t joint, float weight) {
        if (joint >= jointCount_) return;
        geometry_.joints[joint].points.push_back(static_cast<int32_t>(i));
        geometry_.joints[joint].weights.push_back(weight);
      });
    }
  }

  const Document& document_;
  const AccessorReader& accessors_;
  Budget& budget_;
  const Mesh& mesh_;
  size_t jointCount_;
  VertexWeld weld_;
  WordTable uvTable_;
  std::map<std::pair<uint32_t, CoordinateTransform>, std::vector<int32_t>> uvIndices_;
  Geometry geometry_;
};

}  // namespace

uint64_t Geometry::Memory() const {
  uint64_t numbers = points.size() + corners.size() + uvs.size() + uvIndices.size() + polygonMaterials.size();
  for (const JointWeights& joint : joints) numbers += 2 * joint.points.size();
  return numbers * sizeof(int32_t);
}

Geometry JoinPrimitives(const Document& document, const AccessorReader& accessors, Budget& budget,
                        const Node& node, const KFbxXMatrix& place, size_t jointCount) {
  const uint64_t before = budget.Used();
  Geometry geometry = PrimitiveJoiner(document, accessors, budget, node, jointCount).Join(place);
  budget.ReturnTo(before);
  budget.Take(geometry.Memory());
  return geometry;
}

}  // namespace scene::gltf
