// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// Packages read back: what the runtime will see. Knows the files, not how the converter makes them.
namespace actor {

using Vector3 = std::array<float, 3>;
using Quaternion = std::array<float, 4>;  ///< x, y, z, w as stored: w is negated against the usual form

/// One bone of "skeleton.csf"; its number is its place in `Skeleton::bones`.
struct Bone {
  std::string name;
  Vector3 translation{};           ///< relative to the parent
  Quaternion rotation{};           ///< relative to the parent
  Vector3 boneSpaceTranslation{};  ///< maps model space to bone space: R * v + t
  Quaternion boneSpaceRotation{};
  int32_t parent = -1;
  std::vector<int32_t> children;
};

struct Skeleton {
  std::vector<Bone> bones;  ///< parents before children
};

struct Influence {
  int32_t bone = 0;
  float weight = 0.0f;
};

struct Vertex {
  Vector3 position{};
  Vector3 normal{};
  std::array<float, 2> uv{};    ///< as stored: v counts from the top
  uint32_t firstInfluence = 0;  ///< into `Mesh::influences`
  uint32_t influenceCount = 0;
};

/// One "<name>.cmf" file; ours hold one submesh each.
struct Mesh {
  std::string name;  ///< without extension
  int32_t threadId = 0;
  std::vector<Vertex> vertices;
  std::vector<Influence> influences;
  std::vector<std::array<int32_t, 3>> faces;
};

/// One "<name>.xrf" file.
struct Material {
  std::string name;                                         ///< without extension
  std::array<int32_t, 4> ambient{}, diffuse{}, specular{};  ///< red, green, blue, opacity, as stored
  double shininess = 0.0;
  bool hasMap = false;
  std::string map;  ///< member name of the picture; may be empty
};

/// A picture in the package, as its file's bytes (".tga").
struct Picture {
  std::string name;  ///< member name
  std::string bytes;
};

/// A line of the document's mesh and material lists.
struct DocumentMesh {
  std::string name;
  std::string file;
  bool bothSides = false;
};
struct DocumentMaterial {
  std::string name;
  std::string file;
  int32_t threadId = 0;
};

/// The ".xfg" document.
struct Document {
  std::string memberName;
  std::string objectId;
  double scale = 1.0;
  double rotationX = 0.0, rotationY = 0.0;  ///< degrees
  std::string skeletonFile;
  std::vector<std::array<std::string, 2>> boneRenames;  ///< old, new
  std::vector<DocumentMesh> meshes;
  std::vector<DocumentMaterial> materials;
};

/// A whole package in memory.
struct Actor {
  Skeleton skeleton;
  std::vector<Mesh> meshes;
  std::vector<Material> materials;
  std::vector<Picture> pictures;
  Document document;

  /// The material that `mesh` is drawn with: the one of its name in any letter case; null when there is none.
  const Material* MaterialOf(const Mesh& mesh) const;
  /// The picture called `memberName` in any letter case; null when there is none.
  const Picture* FindPicture(const std::string& memberName) const;
};

}  // namespace actor
