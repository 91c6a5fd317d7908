// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <new>
#include <optional>
#include <span>
#include <vector>

#include "scene/model/layer_element.h"
#include "scene/model/node_attribute.h"
#include "scene/model/skin.h"

namespace scene {

/// Where a polygon stands in the file's polygon table.
struct KFbxPolygon {
  uint32_t firstCorner = 0;
  uint32_t size = 0;
  uint32_t number = 0;  ///< among all polygons of the file, the dropped ones included
};

/// What a mesh asks for by what its records say, before anything is decoded.
struct KFbxMeshClaim {
  uint64_t memory = 0;  ///< bytes that its conversion takes at least, whatever the arrays hold
  uint64_t work = 0;    ///< bytes to go through each time the mesh is converted
};

/// A mesh takes more memory than a file of its size can honestly ask for.
class KFbxMeshExcess : public std::bad_alloc {
 public:
  const char* what() const noexcept override {
    return "a mesh unpacks to far more than a file of this size can hold";
  }
};

/// A polygon mesh. Its arrays are decoded when they are first read and can be given up with ReleaseArrays;
/// they come back when they are read again.
class KFbxMesh : public KFbxNodeAttribute {
 public:
  KFbxMesh(std::string_view name, RecordRef geometry);

  RecordRef GetRecord() const { return geometry_; }
  int GetControlPointsCount();
  /// x, y, z of each control point.
  std::span<const double> GetControlPoints();

  /// x, y, z of each control point, for the caller to keep and change.
  FbxArray<double> TakeControlPoints();

  int GetPolygonCount();
  KFbxPolygon GetPolygon(int i);
  int GetPolygonSize(int i) { return static_cast<int>(GetPolygon(i).size); }
  /// Control points of all corners of all polygons of the file, dropped ones included.
  std::span<const int32_t> GetPolygonVertices();
  /// The same for the caller to keep and change. What GetPolygon and the polygon counts tell stays.
  FbxArray<int32_t> TakePolygonVertices();
  size_t GetPolygonVertexCount();
  /// Whether the polygon table is nothing but triangles, corner after corner.
  bool IsPlainTriangleMesh();
  /// Polygons left out because a corner names a control point that does not exist.
  int GetDroppedPolygonCount();

  int GetLayerCount() const { return layerCount_; }
  /// Makes the texture coordinates called `name` those that GetUVs gives. Without such a set they stay those
  /// of layer 0.
  void SelectUVSet(std::string_view name);
  /// The selected texture coordinates, or null.
  KFbxLayerElementUV* GetUVs();
  /// The material element of layer 0, or null.
  KFbxLayerElementMaterial* GetMaterials();

  /// Old files number the textures of the node here, by polygon
  /// or for all; no modes when there is no such element.
  LayerElementSource FindDiffuseTextures() const;

  int GetSkinCount() const { return static_cast<int>(skins_.size()); }
  KFbxSkin* GetSkin(int i) const { return skins_[static_cast<size_t>(i)]; }
  std::span<const KFbxShape> GetShapes() const { return shapes_; }

  /// Of the mesh as it is built; looking at all of its records brings pages of the file into memory, so that
  /// is done once.
  const KFbxMeshClaim& GetClaim();
  /// The most memory that the conversion of the mesh may take.
  uint64_t GetMemoryLimit() const;
  /// What is left of that for what depends on the content of the arrays. Whoever needs more throws a
  /// KFbxMeshExcess before taking it.
  uint64_t GetMemoryLeft();
  /// The same where all that the conversion has in memory is known to be `taken` bytes.
  uint64_t GetMemoryLeftBeside(uint64_t taken) const;

  void ReleaseControlPoints();
  /// Gives up the corners, but not what GetPolygon and the polygon counts tell.
  void ReleaseCorners();
  /// Gives up corners and polygons, but not their counts.
  void ReleasePolygons();
  void ReleaseSkins();
  void ReleaseArrays();

  // For whoever builds a scene.
  void AddSkin(KFbxSkin& skin) { skins_.push_back(&skin); }
  void AddShape(const KFbxShape& shape) { shapes_.push_back(shape); }

 private:
  KFbxMeshClaim MakeClaim() const;
  RecordRef FindLayerElement(std::string_view type) const;
  LayerElementSource FindUVs() const;
  LayerElementSource FindMaterials() const;
  void ReadPolygons();
  /// From the polygon `next` on, polygons are not like those before it: each is listed.
  void StartListing(const KFbxPolygon& next);
  void ForgetPolygons();

  RecordRef geometry_;
  std::optional<KFbxMeshClaim> claim_;
  int layerCount_ = 0;

  FbxArray<double> points_;
  bool pointsRead_ = false;
  int pointCount_ = -1;  ///< kept when the points are released

  FbxArray<int32_t> corners_;
  std::vector<KFbxPolygon> polygons_;  ///< empty when all are of the same size
  uint32_t evenSize_ = 0;              ///< corners of every polygon, none of which is dropped; 0: listed
  bool polygonsRead_ = false;
  bool cornersReleased_ = false;
  bool listReleased_ = false;
  uint32_t cornerCount_ = 0, polygonCount_ = 0;
  int droppedPolygons_ = 0;

  RecordRef selectedUVs_;
  std::unique_ptr<KFbxLayerElementUV> uvs_;
  bool uvsRead_ = false;
  std::unique_ptr<KFbxLayerElementMaterial> materials_;
  bool materialsRead_ = false;

  std::vector<KFbxSkin*> skins_;
  std::vector<KFbxShape> shapes_;
};

}  // namespace scene
