// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "scene/model/layer_element.h"
#include "scene/model/lazy.h"
#include "scene/model/mesh_excess.h"
#include "scene/model/node_attribute.h"
#include "scene/model/polygon_table.h"
#include "scene/model/skin.h"

namespace scene {

/// What the records of a mesh say that their arrays hold, before anything is decoded.
struct KFbxMeshClaim {
  uint64_t pointNumbers = 0;     ///< three for each control point
  uint64_t corners = 0;          ///< of all polygons
  uint64_t materialBytes = 0;    ///< of the polygons' materials, decoded
  uint64_t coordinateBytes = 0;  ///< of the largest set of texture coordinates, decoded
  uint64_t clusters = 0, clusterBytes = 0;
  uint64_t shapeBytes = 0, largestShapeBytes = 0;
  uint64_t records = 0;  ///< below the mesh's own
};

/// A polygon mesh. Its arrays are decoded when they are first read, const as that is, and can be given up with
/// ReleaseArrays; they come back when they are read again.
class KFbxMesh : public KFbxNodeAttribute {
 public:
  KFbxMesh(std::string_view name, RecordRef geometry);

  RecordRef GetRecord() const { return geometry_; }
  int GetControlPointsCount() const;
  /// x, y, z of each control point.
  std::span<const double> GetControlPoints() const { return Points().View(); }

  /// x, y, z of each control point, for the caller to keep and change.
  FbxArray<double> TakeControlPoints();

  const KFbxPolygonTable& GetPolygons() const;
  /// What GetPolygons counts, which is kept when they are released.
  const KFbxPolygonCounts& GetPolygonCounts() const;
  int GetPolygonCount() const { return static_cast<int>(GetPolygonCounts().polygons); }
  /// Control points of all corners of all polygons of the file, dropped ones included.
  std::span<const int32_t> GetPolygonVertices() const;
  /// The same for the caller to keep and change. The polygons stay.
  FbxArray<int32_t> TakePolygonVertices();

  int GetLayerCount() const { return layerCount_; }
  /// Makes the texture coordinates called `name` those that GetUVs gives. Without such a set they stay those
  /// of layer 0.
  void SelectUVSet(std::string_view name);
  /// The selected texture coordinates, or null.
  const KFbxLayerElementUV* GetUVs() const;
  /// The material element of layer 0, or null.
  const KFbxLayerElementMaterial* GetMaterials() const;

  /// Old files number the textures of the node here, by polygon
  /// or for all; no modes when there is no such element.
  LayerElementSource FindDiffuseTextures() const;

  int GetSkinCount() const { return static_cast<int>(skins_.size()); }
  const KFbxSkin* GetSkin(int i) const { return skins_[static_cast<size_t>(i)]; }
  KFbxSkin* GetSkin(int i) { return skins_[static_cast<size_t>(i)]; }
  std::span<const KFbxShape> GetShapes() const { return shapes_; }

  /// Looks at all records of the mesh, which brings pages of the file into memory.
  KFbxMeshClaim GetClaim() const;
  /// How many bytes what depends on the content of the arrays may take; all that the file allows unless set.
  void SetMemoryRoom(uint64_t bytes) { memoryRoom_ = bytes; }
  /// What is left of that. Whoever needs more throws a KFbxMeshExcess before taking it.
  uint64_t GetMemoryLeft() const;

  void ReleaseControlPoints() { points_.Release(); }
  /// Gives up the corners, but not the polygons.
  void ReleaseCorners() { corners_.Release(); }
  /// Gives up corners and polygons, but not their counts.
  void ReleasePolygons();
  /// Gives up which coordinates the corners have, but not the coordinates.
  void ReleaseUVIndices();
  void ReleaseSkins();
  void ReleaseArrays();

  // For whoever builds a scene.
  void AddSkin(KFbxSkin& skin) { skins_.push_back(&skin); }
  void AddShape(const KFbxShape& shape) { shapes_.push_back(shape); }

 private:
  RecordRef FindLayerElement(std::string_view type) const;
  LayerElementSource FindUVs() const;
  LayerElementSource FindMaterials() const;
  const FbxArray<double>& Points() const;
  FbxArray<double> ReadPoints() const;
  /// Learns the polygons as well, where they are not known.
  FbxArray<int32_t> ReadCorners() const;

  RecordRef geometry_;
  uint64_t memoryRoom_;
  int layerCount_ = 0;

  LazyArray<double> points_;
  Lazy<int> pointCount_;
  LazyArray<int32_t> corners_;  ///< never without the polygons
  Lazy<KFbxPolygonTable> polygons_;
  Lazy<KFbxPolygonCounts> polygonCounts_;

  RecordRef selectedUVs_;
  Lazy<std::unique_ptr<KFbxLayerElementUV>> uvs_;
  Lazy<std::unique_ptr<KFbxLayerElementMaterial>> materials_;

  std::vector<KFbxSkin*> skins_;
  std::vector<KFbxShape> shapes_;
};

}  // namespace scene
