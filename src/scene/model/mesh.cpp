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
      layerCount_(CountLayers(geometry)) {}

std::span<const double> KFbxMesh::GetControlPoints() {
  if (!pointsRead_) {
    pointsRead_ = true;
    if (!ReadArray(geometry_.Child("Vertices"), points_)) points_.Release();
    constexpr size_t kMost = std::numeric_limits<int32_t>::max();
    points_.Shorten(std::min(points_.size() / 3, kMost) * 3);
    pointCount_ = static_cast<int>(points_.size() / 3);
  }
  return points_.View();
}

FbxArray<double> KFbxMesh::TakeControlPoints() {
  GetControlPoints();
  pointsRead_ = false;
  return std::move(points_);
}

int KFbxMesh::GetControlPointsCount() {
  if (pointCount_ < 0) GetControlPoints();
  return pointCount_;
}

void KFbxMesh::ReadPolygons() {
  if (polygonsRead_) return;
  polygonsRead_ = true;
  droppedPolygons_ = 0;
  if (!ReadArray(geometry_.Child("PolygonVertexIndex"), corners_)) corners_.Release();
  corners_.Shorten(std::numeric_limits<int32_t>::max());
  const int32_t pointCount = GetControlPointsCount();
  const auto cornerCount = static_cast<uint32_t>(corners_.size());
  cornerCount_ = cornerCount;
  const auto isLast = [&](uint32_t i) { return corners_[i] < 0 || i + 1 == cornerCount; };
  evenSize_ = 1;
  while (evenSize_ < cornerCount && !isLast(evenSize_ - 1)) ++evenSize_;
  KFbxPolygon polygon;
  bool sound = true;
  for (uint32_t i = 0; i < cornerCount; ++i) {
    const bool last = isLast(i);
    int32_t& corner = corners_[i];
    if (corner < 0) corner = ~corner;
    sound &= corner < pointCount;
    if (!last) continue;
    polygon.size = i + 1 - polygon.firstCorner;
    if (evenSize_ != 0 && (polygon.size != evenSize_ || !sound)) StartListing(polygon);
    if (!sound) {
      ++droppedPolygons_;
    } else if (evenSize_ == 0) {
      polygons_.push_back(polygon);
    }
    sound = true;
    ++polygon.number;
    polygon.firstCorner = i + 1;
  }
  polygonCount_ = polygon.number - static_cast<uint32_t>(droppedPolygons_);
}

void KFbxMesh::StartListing(const KFbxPolygon& next) {
  const auto left = std::span(corners_.begin(), cornerCount_).subspan(next.firstCorner + next.size);
  const auto isNegative = [](int32_t corner) { return corner < 0; };
  const size_t most =
      next.number + 2 + static_cast<size_t>(std::count_if(left.begin(), left.end(), isNegative));
  if (most * sizeof(KFbxPolygon) > GetMemoryLeft()) throw KFbxMeshExcess();
  polygons_.reserve(most);
  for (uint32_t k = 0; k < next.number; ++k) polygons_.push_back({evenSize_ * k, evenSize_, k});
  evenSize_ = 0;
}

size_t KFbxMesh::GetPolygonVertexCount() {
  ReadPolygons();
  return cornerCount_;
}

bool KFbxMesh::IsPlainTriangleMesh() {
  ReadPolygons();
  return evenSize_ == 3 || cornerCount_ == 0;
}

int KFbxMesh::GetDroppedPolygonCount() {
  ReadPolygons();
  return droppedPolygons_;
}

int KFbxMesh::GetPolygonCount() {
  ReadPolygons();
  return static_cast<int>(polygonCount_);
}

KFbxPolygon KFbxMesh::GetPolygon(int i) {
  if (listReleased_) ForgetPolygons();
  ReadPolygons();
  const auto index = static_cast<uint32_t>(i);
  return evenSize_ != 0 ? KFbxPolygon{evenSize_ * index, evenSize_, index} : polygons_[index];
}

std::span<const int32_t> KFbxMesh::GetPolygonVertices() {
  if (cornersReleased_) ForgetPolygons();
  ReadPolygons();
  return corners_.View();
}

FbxArray<int32_t> KFbxMesh::TakePolygonVertices() {
  GetPolygonVertices();
  cornersReleased_ = true;
  return std::move(corners_);
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
  uvs_.reset();
  uvsRead_ = false;
  if (name.empty() || name == "default") return;
  for (const RecordRef element : geometry_) {
    if (element.Name() != "LayerElementUV" || element.Child("Name").Text(0) != name) continue;
    selectedUVs_ = element;
    return;
  }
}

KFbxLayerElementUV* KFbxMesh::GetUVs() {
  if (!uvsRead_) {
    uvsRead_ = true;
    const LayerElementSource source = FindUVs();
    if (source.modes.mapping != EMappingMode::eNONE) {
      uvs_ = std::make_unique<KFbxLayerElementUV>(source, GetPolygonVertexCount());
    }
  }
  return uvs_.get();
}

KFbxLayerElementMaterial* KFbxMesh::GetMaterials() {
  if (!materialsRead_) {
    materialsRead_ = true;
    const LayerElementSource source = FindMaterials();
    if (source.modes.mapping != EMappingMode::eNONE) {
      materials_ = std::make_unique<KFbxLayerElementMaterial>(source);
    }
  }
  return materials_.get();
}

void KFbxMesh::ReleaseControlPoints() {
  points_.Release();
  pointsRead_ = false;
}

void KFbxMesh::ReleaseCorners() {
  corners_.Release();
  cornersReleased_ = true;
}

void KFbxMesh::ReleasePolygons() {
  ReadPolygons();
  ReleaseCorners();
  polygons_ = std::vector<KFbxPolygon>();
  listReleased_ = evenSize_ == 0;
}

void KFbxMesh::ForgetPolygons() {
  corners_.Release();
  cornersReleased_ = listReleased_ = false;
  polygons_ = std::vector<KFbxPolygon>();
  polygonsRead_ = false;
}

void KFbxMesh::ReleaseSkins() {
  for (KFbxSkin* skin : skins_) skin->ReleaseArrays();
}

void KFbxMesh::ReleaseArrays() {
  ForgetPolygons();
  ReleaseControlPoints();
  ReleaseSkins();
  uvs_.reset();
  uvsRead_ = false;
  materials_.reset();
  materialsRead_ = false;
}

}  // namespace scene
