// SPDX-License-Identifier: MIT
#include "scene/model/mesh.h"

#include <algorithm>
#include <limits>

namespace scene {
namespace {

constexpr int64_t kMostLayers = 1 << 20;

int CountLayers(RecordRef geometry) {
  int64_t count = 0;
  bool hasElements = false;
  for (const RecordRef record : geometry) {
    if (record.Name() == "Layer") count = std::max(count, std::min(record.Integer(0, 0), kMostLayers) + 1);
    hasElements |= record.Name().starts_with("LayerElement") || record.Name() == "GeometryUVInfo" ||
                   record.Name() == "MaterialAssignation";
  }
  if (count == 0 && hasElements) count = 1;
  return static_cast<int>(std::clamp<int64_t>(count, 0, kMostLayers));
}

/// Typed index of the element `type` in layer 0, or -1. Without any layer the elements number themselves.
int64_t TypedIndexInFirstLayer(RecordRef geometry, std::string_view type) {
  bool anyLayer = false;
  for (const RecordRef layer : geometry) {
    if (layer.Name() != "Layer") continue;
    anyLayer = true;
    if (layer.Integer(0, 0) != 0) continue;
    for (const RecordRef element : layer) {
      if (element.Name() == "LayerElement" && element.Child("Type").Text(0) == type) {
        return element.Child("TypedIndex").Integer(0, 0);
      }
    }
  }
  return anyLayer ? -1 : 0;
}

}  // namespace

KFbxMesh::KFbxMesh(std::string_view name, RecordRef geometry)
    : KFbxNodeAttribute(name, EAttributeType::eMESH),
      geometry_(geometry),
      memoryRoom_(geometry ? geometry.Tree().MemoryAllowance() : UINT64_MAX),
      layerCount_(CountLayers(geometry)) {}

FbxArray<double> KFbxMesh::ReadPoints() const {
  constexpr size_t kMost = std::numeric_limits<int32_t>::max();
  FbxArray<double> points = ArrayOf<double>(geometry_.Child("Vertices"));
  points.Shorten(std::min(points.size() / 3, kMost) * 3);
  pointCount_.Learn(static_cast<int>(points.size() / 3));
  return points;
}

const FbxArray<double>& KFbxMesh::Points() const {
  return points_.Get([this] { return ReadPoints(); });
}

FbxArray<double> KFbxMesh::TakeControlPoints() {
  return points_.Take([this] { return ReadPoints(); });
}

int KFbxMesh::GetControlPointsCount() const {
  if (!pointCount_.Known()) Points();
  return *pointCount_.Known();
}

FbxArray<int32_t> KFbxMesh::ReadCorners() const {
  FbxArray<int32_t> corners = ArrayOf<int32_t>(geometry_.Child("PolygonVertexIndex"));
  corners.Shorten(std::numeric_limits<int32_t>::max());
  if (polygons_.Known()) {
    for (int32_t& corner : corners) corner = corner < 0 ? ~corner : corner;
  } else {
    polygons_.Learn(KFbxPolygonTable(corners, GetControlPointsCount(), GetMemoryLeft()));
    polygonCounts_.Learn(polygons_.Known()->Counts());
  }
  return corners;
}

const KFbxPolygonTable& KFbxMesh::GetPolygons() const {
  if (!polygons_.Known()) GetPolygonVertices();
  return *polygons_.Known();
}

const KFbxPolygonCounts& KFbxMesh::GetPolygonCounts() const {
  return polygonCounts_.Get([this] { return GetPolygons().Counts(); });
}

std::span<const int32_t> KFbxMesh::GetPolygonVertices() const {
  return corners_.Get([this] { return ReadCorners(); }).View();
}

FbxArray<int32_t> KFbxMesh::TakePolygonVertices() {
  return corners_.Take([this] { return ReadCorners(); });
}

RecordRef KFbxMesh::FindLayerElement(std::string_view type) const {
  const int64_t index = TypedIndexInFirstLayer(geometry_, type);
  for (const RecordRef record : geometry_) {
    if (record.Name() == type && record.Integer(0, 0) == index) return record;
  }
  return {};
}

LayerElementSource KFbxMesh::FindUVs() const {
  if (const RecordRef element = selectedUVs_ ? selectedUVs_ : FindLayerElement("LayerElementUV")) {
    return {ReadLayerElementModes(element), element.Child("UV"), element.Child("UVIndex")};
  }
  const RecordRef old = geometry_.Child("GeometryUVInfo");
  LayerElementModes modes = ReadLayerElementModes(old);
  modes.reference = EReferenceMode::eINDEX_TO_DIRECT;
  return {modes, old.Child("TextureUV"), old.Child("TextureUVVerticeIndex"), true};
}

LayerElementSource KFbxMesh::FindMaterials() const {
  if (const RecordRef element = FindLayerElement("LayerElementMaterial")) {
    return {ReadLayerElementModes(element), {}, element.Child("Materials")};
  }
  LayerElementModes modes;
  modes.mapping = MappingModeOf(geometry_.Child("MaterialAssignation").Text(0));
  modes.reference = EReferenceMode::eINDEX_TO_DIRECT;
  return {modes, {}, geometry_.Child("Materials")};
}

LayerElementSource KFbxMesh::FindDiffuseTextures() const {
  const RecordRef element = FindLayerElement("LayerElementTexture");
  return {ReadLayerElementModes(element), {}, element.Child("TextureId")};
}

void KFbxMesh::SelectUVSet(std::string_view name) {
  selectedUVs_ = {};
  uvs_.Release();
  if (name.empty() || name == "default") return;
  for (const RecordRef element : geometry_) {
    if (element.Name() != "LayerElementUV" || element.Child("Name").Text(0) != name) continue;
    selectedUVs_ = element;
    return;
  }
}

const KFbxLayerElementUV* KFbxMesh::GetUVs() const {
  const auto read = [this]() -> std::unique_ptr<KFbxLayerElementUV> {
    const LayerElementSource source = FindUVs();
    if (source.modes.mapping == EMappingMode::eNONE) return nullptr;
    return std::make_unique<KFbxLayerElementUV>(source, GetPolygonCounts().corners);
  };
  return uvs_.Get(read).get();
}

const KFbxLayerElementMaterial* KFbxMesh::GetMaterials() const {
  const auto read = [this]() -> std::unique_ptr<KFbxLayerElementMaterial> {
    const LayerElementSource source = FindMaterials();
    if (source.modes.mapping == EMappingMode::eNONE) return nullptr;
    return std::make_unique<KFbxLayerElementMaterial>(source);
  };
  return materials_.Get(read).get();
}

void KFbxMesh::ReleasePolygons() {
  corners_.Release();
  polygons_.Release();
}

void KFbxMesh::ReleaseUVIndices() {
  if (auto* uvs = uvs_.Known(); uvs && *uvs) (*uvs)->ReleaseIndexArray();
}

void KFbxMesh::ReleaseSkins() {
  for (KFbxSkin* skin : skins_) skin->ReleaseArrays();
}

void KFbxMesh::ReleaseArrays() {
  ReleasePolygons();
  ReleaseControlPoints();
  ReleaseSkins();
  uvs_.Release();
  materials_.Release();
}

}  // namespace scene
