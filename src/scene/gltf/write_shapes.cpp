// SPDX-License-Identifier: MIT
#include "scene/gltf/write_shapes.h"

#include <algorithm>

namespace scene::gltf {
namespace {

struct Shape {
  std::string name;
  double weight;
};

std::vector<Shape> ShapesOf(const Mesh& mesh, const std::vector<double>& weights) {
  size_t count = 0;
  for (const Primitive& primitive : mesh.primitives) count = std::max(count, primitive.targets.size());
  std::vector<Shape> shapes;
  for (size_t i = 0; i < std::min(count, weights.size()); ++i) {
    const bool isNamed = i < mesh.targetNames.size() && !mesh.targetNames[i].empty();
    if (weights[i] != 0.0)
      shapes.push_back({isNamed ? mesh.targetNames[i] : "Target_" + std::to_string(i), weights[i]});
  }
  return shapes;
}

}  // namespace

void WriteShapes(const Document& document, const Node& node, Budget& budget, RecordWriter& writer) {
  const Mesh& mesh = document.meshes[node.mesh];
  const std::vector<Shape> shapes = ShapesOf(mesh, node.weights.empty() ? mesh.weights : node.weights);
  if (shapes.empty()) return;
  // Its two records, and what becomes of them.
  constexpr uint64_t kShapeMemory = 1024;
  for (const Shape& shape : shapes) budget.Take(kShapeMemory + 2 * shape.name.size());
  // As version 7.1 has them, which keeps them in the geometry.
  writer.Begin("Properties70");
  for (const auto& [name, weight] : shapes)
    writer.Begin("P").Text(name).Bytes("").Bytes("").Bytes("").Real(100 * weight).End();
  writer.End();
  for (const auto& [name, weight] : shapes) writer.Begin("Shape").Text(name).End();
}

}  // namespace scene::gltf
