// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "scene/container/record_tree.h"

namespace scene {

/// What kind of object a record of "Objects" describes. Kinds that no scene object is made from are not kept.
enum class ObjectKind : uint8_t {
  Model,
  NodeAttribute,
  Geometry,
  Deformer,
  Material,
  Texture,
  LayeredTexture,
  Video,
  Pose
};

/// One object of the document.
struct FbxObject {
  ObjectKind kind = ObjectKind::Model;
  int64_t id = 0;
  std::string_view name;     ///< without its class
  std::string_view subType;  ///< "Mesh", "LimbNode", "Skin", ...
  RecordRef record;
};

/// `source` is used by `destination`, as a whole or by one of its properties.
struct FbxConnection {
  uint32_t source = 0;
  uint32_t destination = 0;
  std::string_view property;  ///< empty for object to object
};

/// The objects of a document and who is connected to whom, both in file order.
class ObjectTable {
 public:
  /// Stands for the scene's root node, which has no object of its own.
  static constexpr uint32_t kRoot = 0xffffffff;

  explicit ObjectTable(const RecordTree& tree);

  std::span<const FbxObject> Objects() const { return objects_; }
  const FbxObject& operator[](uint32_t index) const { return objects_[index]; }

  /// Index of the object `id`; false when there is none. Of equal identifiers the first object counts.
  bool Find(int64_t id, uint32_t& index) const;

  /// Connections whose ends both exist, in file order.
  std::span<const FbxConnection> Connections() const { return connections_; }

 private:
  void ReadObjects(const RecordTree& tree);
  void ReadConnections(const RecordTree& tree);

  std::vector<FbxObject> objects_;
  std::unordered_map<int64_t, uint32_t> byId_;
  std::vector<FbxConnection> connections_;
};

}  // namespace scene
