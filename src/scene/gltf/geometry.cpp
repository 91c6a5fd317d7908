// SPDX-License-Identifier: MIT
#include "scene/gltf/geometry.h"

#include <algorithm>
#include <limits>

#include "scene/gltf/vertex_weld.h"

namespace scene::gltf {
namespace {

class PrimitiveJoiner {
 public:
  PrimitiveJoiner(const Document& document, const AccessorReader& accessors, Budget& budget, const Node& node,
                  size_t jointCount)
      : document_(document),
        accessors_(accessors),
        budget_(budget),
        mesh_(document.meshes[node.mesh]),
        shapeWeights_(node.weights.empty() ? mesh_.weights : node.weights),
        jointCount_(jointCount) {}

  Geometry Join(const MeshPlace& place) {
    geometry_.place = place.points;
    for (const Primitive& primitive : mesh_.primitives) {
      if (primitive.HasSurface() && primitive.position != kNone) surfaces_.push_back(&primitive);
    }
    budget_.Take(surfaces_.size() * Geometry::kPrimitiveMemory);
    const std::vector<VertexNumbers> points = WeldPoints(), pairs = ReadCoordinates(points);
    for (size_t i = 0; i < surfaces_.size(); ++i)
      AddTriangles(*surfaces_[i], place.isMirrored, points[i], pairs[i]);
    return std::move(geometry_);
  }

 private:
  size_t InfluenceSets() const {
    size_t sets = 0;
    for (const Primitive& primitive : mesh_.primitives)
      sets = std::max(sets, std::min(primitive.joints.size(), primitive.weights.size()));
    return jointCount_ > 0 ? sets : 0;
  }

  /// Control points of each surface's vertices. Takes their influences as well.
  std::vector<VertexNumbers> WeldPoints() {
    budget_.Take(jointCount_ * InfluenceLists::kJointMemory);
    VertexWeld weld(accessors_, budget_, InfluenceSets(), shapeWeights_, geometry_.points);
    std::vector<VertexNumbers> numbers;
    for (const Primitive* surface : surfaces_) numbers.push_back(weld.PointsOf(*surface));
    geometry_.influences = InfluenceLists(geometry_.points, jointCount_);
    budget_.Take(uint64_t{geometry_.points.size()} * 12 + geometry_.influences.Memory());
    geometry_.points.DropNormals();
    return numbers;
  }

  /// @param points  control points of each surface's vertices
  /// @return pairs of coordinates of the vertices, in the set of its material, or in the first.
  std::vector<VertexNumbers> ReadCoordinates(std::span<const VertexNumbers> points) {
    static const Material kPlain;
    CoordinateTable table(accessors_, budget_, geometry_.points.size());
    std::vector<VertexNumbers> numbers;
    for (size_t i = 0; i < surfaces_.size(); ++i) {
      const Primitive& surface = *surfaces_[i];
      const Material& material = surface.material == kNone ? kPlain : document_.materials[surface.material];
      const size_t set = material.image == kNone ? 0 : material.coordinates;
      numbers.push_back(set < surface.coordinates.size()
                            ? table.PairsOf(surface.coordinates[set], material.transform, points[i])
                            : nullptr);
    }
    geometry_.coordinates = table.Take();
    return numbers;
  }

  void AddTriangles(const Primitive& primitive, bool isMirrored, const VertexNumbers& points,
                    const VertexNumbers& pairs) {
    std::optional<IntegerElements> indices;
    if (primitive.indices != kNone) indices = accessors_.Integers(primitive.indices, 1);
    const size_t count = indices ? indices->size() : points->size();
    // What is written later.
    budget_.Take(TriangleList::MostTriangles(primitive.mode, count) * 28);
    geometry_.triangles.emplace_back(primitive.mode, std::move(indices), isMirrored, points, pairs,
                                     FindMaterial(primitive.material));
    constexpr size_t kMost = std::numeric_limits<int32_t>::max() / 3;
    if (geometry_.TriangleCount() > kMost) throw Fault("a mesh has too many triangles");
  }

  int32_t FindMaterial(uint32_t material) {
    std::vector<uint32_t>& known = geometry_.materials;
    const auto place = std::find(known.begin(), known.end(), material) - known.begin();
    if (place == std::ssize(known)) known.push_back(material);
    return static_cast<int32_t>(place);
  }

  const Document& document_;
  const AccessorReader& accessors_;
  Budget& budget_;
  const Mesh& mesh_;
  std::span<const double> shapeWeights_;
  size_t jointCount_;
  std::vector<const Primitive*> surfaces_;
  Geometry geometry_;
};

/// @param perTriangle  numbers in the list
/// @param write        writes those of a primitive
template <class Write>
FbxArray<int32_t> MakeList(const Geometry& geometry, size_t perTriangle, const Write& write) {
  FbxArray<int32_t> list;
  const size_t count = perTriangle * geometry.TriangleCount();
  std::span<int32_t> rest(list.Allocate(count), count);
  for (const TriangleList& triangles : geometry.triangles) {
    write(triangles, rest.first(perTriangle * triangles.Count()));
    rest = rest.subspan(perTriangle * triangles.Count());
  }
  return list;
}

}  // namespace

size_t Geometry::TriangleCount() const {
  size_t count = 0;
  for (const TriangleList& list : triangles) count += list.Count();
  return count;
}

size_t Geometry::PairCount() const {
  return coordinates.empty() ? 0 : coordinates.back().First() + coordinates.back().size();
}

FbxArray<int32_t> Geometry::MakeCorners() const {
  return MakeList(*this, 3, [](const TriangleList& list, std::span<int32_t> to) { list.WriteCorners(to); });
}

FbxArray<double> Geometry::MakePairs() const {
  FbxArray<double> numbers;
  double* to = numbers.Allocate(2 * PairCount());
  for (const CoordinateList& list : coordinates) {
    for (size_t i = 0; i < list.size(); ++i) {
      for (const float number : list.At(i)) *to++ = static_cast<double>(number);
    }
  }
  return numbers;
}

FbxArray<int32_t> Geometry::MakeCoordinates() const {
  return MakeList(*this, 3,
                  [](const TriangleList& list, std::span<int32_t> to) { list.WriteCoordinates(to); });
}

FbxArray<int32_t> Geometry::MakeMaterials() const {
  return MakeList(*this, 1, [](const TriangleList& list, std::span<int32_t> to) {
    std::fill(to.begin(), to.end(), list.Material());
  });
}

uint64_t Geometry::Memory() const {
  constexpr uint64_t kPoint = 3 * sizeof(double), kTriangle = 7 * sizeof(int32_t);
  uint64_t bytes = points.Memory() + kPoint * points.size() + kTriangle * TriangleCount() +
                   influences.Memory() + triangles.size() * kPrimitiveMemory;
  for (const CoordinateList& list : coordinates) bytes += list.Memory();
  return bytes;
}

Geometry JoinPrimitives(const Document& document, const AccessorReader& accessors, Budget& budget,
                        const Node& node, const MeshPlace& place, size_t jointCount) {
  const uint64_t before = budget.Used();
  Geometry geometry = PrimitiveJoiner(document, accessors, budget, node, jointCount).Join(place);
  budget.ReturnTo(before);
  budget.Take(geometry.Memory());
  return geometry;
}

}  // namespace scene::gltf
