// SPDX-License-Identifier: MIT
#include "scene/gltf/write_geometry.h"

#include "scene/gltf/write_shapes.h"

namespace scene::gltf {
namespace {

void BeginElement(RecordWriter& writer, const char* name, const char* mapping) {
  writer.Begin(name).Integer(0);
  writer.Begin("MappingInformationType").Bytes(mapping).End();
  writer.Begin("ReferenceInformationType").Bytes("IndexToDirect").End();
}

void WritePolygons(const Geometry& geometry, RecordWriter& writer) {
  writer.Begin("Vertices")
      .Later(3 * size_t{geometry.points.size()},
             [&geometry] { return geometry.points.Placed(geometry.place); })
      .End();
  writer.Begin("PolygonVertexIndex")
      .Later(3 * geometry.TriangleCount(), [&geometry] { return geometry.MakeCorners(); })
      .End();
}

void WriteCoordinates(const Geometry& geometry, RecordWriter& writer) {
  if (geometry.PairCount() == 0) return;
  BeginElement(writer, "LayerElementUV", "ByPolygonVertex");
  writer.Begin("UV").Later(2 * geometry.PairCount(), [&geometry] { return geometry.MakePairs(); }).End();
  writer.Begin("UVIndex")
      .Later(3 * geometry.TriangleCount(), [&geometry] { return geometry.MakeCoordinates(); })
      .End();
  writer.End();
}

void WriteMaterialsUsed(const Geometry& geometry, RecordWriter& writer) {
  static constexpr int32_t kFirst[] = {0};
  const bool isOne = geometry.materials.size() == 1;
  BeginElement(writer, "LayerElementMaterial", isOne ? "AllSame" : "ByPolygon");
  writer.Begin("Materials");
  if (isOne) {
    writer.Array(kFirst);
  } else {
    writer.Later(geometry.TriangleCount(), [&geometry] { return geometry.MakeMaterials(); });
  }
  writer.End();
  writer.End();
}

}  // namespace

int64_t WriteGeometry(const Document& document, const Node& node, const Geometry& geometry, Budget& budget,
                      RecordWriter& writer, ObjectLinks& links) {
  const int64_t id = links.NewId();
  writer.Begin("Geometry").Integer(id).Bytes("").Bytes("Mesh");
  WriteShapes(document, node, budget, writer);
  WritePolygons(geometry, writer);
  WriteCoordinates(geometry, writer);
  WriteMaterialsUsed(geometry, writer);
  writer.End();
  return id;
}

}  // namespace scene::gltf
