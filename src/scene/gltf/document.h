// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "scene/math/matrix.h"

/// glTF 2.0: its JSON as plain structures, and what becomes of them.
namespace scene::gltf {

/// Why a file cannot be read, in words for its user.
struct Fault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The same for a version that is not read.
struct VersionFault : Fault {
  using Fault::Fault;
};

/// An index of something that is not there.
inline constexpr uint32_t kNone = 0xffffffff;

struct Buffer {
  std::string uri;  ///< empty: the binary chunk of the file
  uint64_t size = 0;
};

/// Where the data of a compressed view lies, and how it is packed.
struct PackedView {
  uint32_t buffer = kNone;
  uint64_t offset = 0, size = 0, stride = 0, count = 0;
  std::string mode, filter;  ///< as "ATTRIBUTES" and "OCTAHEDRAL"
};

struct BufferView {
  uint32_t buffer = kNone;
  uint64_t offset = 0, size = 0;
  uint32_t stride = 0;     ///< 0: elements follow each other
  std::string compressed;  ///< the extension that it needs to be unpacked; empty: none
  PackedView packed;       ///< for such a view
};

/// Some bytes of a view.
struct Place {
  uint32_t view = kNone;
  uint64_t offset = 0;
};

enum class Component : uint32_t { I8 = 5120, U8 = 5121, I16 = 5122, U16 = 5123, U32 = 5125, F32 = 5126 };

struct Accessor {
  Place place;  ///< without a view: zeros
  Component component = Component::F32;
  uint32_t width = 1;  ///< numbers in an element: 3 for VEC3, 16 for MAT4
  bool normalized = false;
  uint64_t count = 0;
  uint64_t sparseCount = 0;  ///< elements that `sparseValues` replaces
  Component sparseComponent = Component::U16;
  Place sparseIndices, sparseValues;
};

/// Data that is compressed with KHR_draco_mesh_compression; the accessors tell only what it holds.
struct PackedPrimitive {
  uint32_t view = kNone;                                  ///< kNone: it is not compressed
  std::vector<std::pair<uint32_t, uint32_t>> attributes;  ///< accessor and number within the data
  bool isSpare = false;                                   ///< the file may have the same without compression

  auto operator<=>(const PackedPrimitive&) const = default;
};

enum PrimitiveMode : uint32_t { kTriangles = 4, kStrip = 5, kFan = 6 };

/// Accessors of the attributes; those with numbers in their names in order.
struct Primitive {
  uint32_t mode = kTriangles;
  uint32_t indices = kNone, position = kNone, normal = kNone, material = kNone;
  std::vector<uint32_t> joints, weights, coordinates;
  std::vector<uint32_t> targets;  ///< positions of the morph targets
  PackedPrimitive packed;

  bool HasSurface() const { return mode >= kTriangles && mode <= kFan; }
};

struct Mesh {
  std::string name;
  std::vector<Primitive> primitives;
  std::vector<double> weights;           ///< of the morph targets
  std::vector<std::string> targetNames;  ///< as far as the file tells them
};

struct Skin {
  std::vector<uint32_t> joints;
  uint32_t inverseBind = kNone;
};

struct Node {
  std::string name;
  std::vector<uint32_t> children;
  uint32_t parent = kNone;
  uint32_t mesh = kNone, skin = kNone;
  KFbxXMatrix local;
  std::vector<double> weights;  ///< in place of those of the mesh
};

/// u' = c[0] u + c[1] v + c[2], v' = c[3] u + c[4] v + c[5].
using CoordinateTransform = std::array<double, 6>;

struct Material {
  std::string name;
  std::array<double, 4> colour{1, 1, 1, 1};
  std::array<double, 3> emissive{};
  bool isBlended = false;
  uint32_t image = kNone;
  uint32_t coordinates = 0;
  CoordinateTransform transform{1, 0, 0, 0, 1, 0};
};

struct Image {
  std::string name, uri, mimeType;
  uint32_t view = kNone;
};

/// What an avatar file says about itself.
struct Avatar {
  bool facesBack = false;                                  ///< VRM 0.x: looks along -Z
  std::vector<std::pair<std::string, uint32_t>> humanoid;  ///< node of each bone of a human, as "leftFoot"
  std::string licence;                                     ///< one line; empty when it says nothing
};

struct Document {
  std::pair<int, int> version;  ///< {2, 0} for 2.0
  std::vector<Buffer> buffers;
  std::vector<BufferView> views;
  std::vector<Accessor> accessors;
  std::vector<Mesh> meshes;
  std::vector<Skin> skins;
  std::vector<Node> nodes;
  std::vector<Material> materials;
  std::vector<Image> images;
  std::vector<std::string> motions;
  std::string unread;           ///< extensions that shape the model and are not read, as "A, B"
  std::vector<uint32_t> roots;  ///< nodes without a parent, those of the scene that is shown
  Avatar avatar;
};

/// Reads the JSON of a file. All indices of what comes back exist, and nodes are trees.
/// @param fileSize  what the memory that the text may take is held against
/// @throws Fault
Document ReadDocument(std::string_view json, uint64_t fileSize);

}  // namespace scene::gltf
