// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/fbx_builder.h"

namespace support {

/// A character under construction, as the file that an artist would export.
class Character {
 public:
  using Id = int64_t;

  struct MeshNode {
    Id node;
    FbxRecord* geometry;
    Id geometryId;
    Id skin = 0;
  };

  struct PoseEntry {
    Id node;
    Matrix16 matrix;
    bool isLocal = false;
  };

  Id Bone(std::string name, Id parent = 0, FbxRecords properties = {}) {
    const Id bone = Node(std::move(name), parent, std::move(properties));
    file_.Connect(Attribute("LimbNode"), bone);
    return bone;
  }
  Id Node(std::string name, Id parent = 0, FbxRecords properties = {}) {
    file_.Model(++last_, std::move(name), std::move(properties));
    file_.Connect(last_, parent);
    return last_;
  }
  Id Null(std::string name, Id parent = 0, FbxRecords properties = {}) {
    return Other("Null", std::move(name), parent, std::move(properties));
  }
  /// A node with an attribute of the kind `subType`.
  Id Other(const char* subType, std::string name, Id parent = 0, FbxRecords properties = {}) {
    const Id node = Node(std::move(name), parent, std::move(properties));
    file_.Connect(Attribute(subType), node);
    return node;
  }
  MeshNode Mesh(std::string name, std::vector<double> points, std::vector<double> polygons, Id parent = 0,
                FbxRecords properties = {}) {
    const Id node = Node(std::move(name), parent, std::move(properties));
    FbxRecord& geometry = file_.Mesh(++last_, std::move(points), std::move(polygons));
    file_.Connect(last_, node);
    return {node, &geometry, last_};
  }
  /// One triangle in the x-y plane, counterclockwise seen from +z.
  MeshNode Triangle(std::string name, Id parent = 0) {
    return Mesh(std::move(name), {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, -3}, parent);
  }

  /// Texture coordinates by polygon corner.
  static void Coordinates(const MeshNode& mesh, std::vector<double> uvs, std::vector<double> indices) {
    mesh.geometry->Add(LayerElement("LayerElementUV", 0, "ByPolygonVertex", "IndexToDirect",
                                    {Doubles("UV", std::move(uvs)), Ints("UVIndex", std::move(indices))}));
  }
  /// Material number of each polygon.
  static void MaterialNumbers(const MeshNode& mesh, std::vector<double> numbers) {
    mesh.geometry->Add(LayerElement("LayerElementMaterial", 0, "ByPolygon", "IndexToDirect",
                                    {Ints("Materials", std::move(numbers))}));
  }
  Id Material(const MeshNode& mesh, std::string shadingModel = "phong", FbxRecords properties = {}) {
    file_.Material(++last_, "material", std::move(shadingModel), std::move(properties));
    file_.Connect(last_, mesh.node);
    return last_;
  }
  FbxRecord& Texture(Id material, std::string fileName, std::string relativeFileName = "",
                     const char* property = "DiffuseColor", const char* kind = "Texture") {
    FbxRecord& texture = file_.Object(kind, ++last_, "texture");
    texture.Add({"FileName", {std::move(fileName)}});
    texture.Add({"RelativeFilename", {std::move(relativeFileName)}});
    file_.Connect(last_, material, property);
    return texture;
  }

  /// A stack of the pictures `files`, the lowest first.
  void LayeredTexture(Id material, const std::vector<std::string>& files) {
    const Id stack = ++last_;
    file_.Object("LayeredTexture", stack, "layers");
    file_.Connect(stack, material, "DiffuseColor");
    for (const std::string& name : files) {
      file_.Object("Texture", ++last_, "layer").Add({"FileName", {name}});
      file_.Connect(last_, stack);
    }
  }

  /// Embeds a picture into the texture that was added last.
  void Embed(std::string fileName, std::string base64) {
    const Id texture = last_;
    FbxRecord& video = file_.Object("Video", ++last_, "video", "Clip");
    video.Add({"Filename", {std::move(fileName)}});
    video.Add({"Content", {std::move(base64)}});
    file_.Connect(last_, texture);
  }

  /// Adds the cluster of `bone` to the mesh's skin. The mesh is bound where it stands.
  FbxRecord& Weights(MeshNode& mesh, Id bone, std::vector<double> indices, std::vector<double> weights) {
    if (!mesh.skin) {
      mesh.skin = ++last_;
      file_.Skin(mesh.skin);
      file_.Connect(mesh.skin, mesh.geometryId);
    }
    FbxRecord& cluster = file_.Cluster(++last_, std::move(indices), std::move(weights));
    file_.Connect(last_, mesh.skin);
    file_.Connect(bone, last_);
    return cluster;
  }

  void BindPose(const std::vector<PoseEntry>& entries) {
    FbxRecord& pose = file_.BindPose(++last_, "pose");
    for (const PoseEntry& entry : entries) {
      FbxRecord& node = pose.Add({"PoseNode", {}, {{"Node", {entry.node}}, Doubles("Matrix", entry.matrix)}});
      if (entry.isLocal) node.Add({"Local", {1}});
    }
  }

  std::string Text() const { return WriteAscii(file_.Records()); }

 private:
  Id Attribute(const char* subType) {
    file_.Object("NodeAttribute", ++last_, "", subType);
    return last_;
  }

  FbxFile file_;
  Id last_ = 100;
};

inline FbxRecord At(double x, double y, double z) { return Property("Lcl Translation", {x, y, z}); }
inline FbxRecord Turned(double x, double y, double z) { return Property("Lcl Rotation", {x, y, z}); }
inline FbxRecord Scaled(double x, double y, double z) { return Property("Lcl Scaling", {x, y, z}); }

inline Matrix16 ScaleMatrix(double x, double y, double z) {
  return {x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, 1};
}

}  // namespace support
