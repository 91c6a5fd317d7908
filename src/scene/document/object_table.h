// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/mixed_hash.h"
#include "scene/container/record_tree.h"

namespace scene {

/// What kind of object a record describes. Kinds that no scene object is made from are not kept.
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

/// One object of the document. Older versions keep several of them in one record.
struct FbxObject {
  ObjectKind kind = ObjectKind::Model;
  std::string_view name;     ///< without its class
  std::string_view subType;  ///< "Mesh", "LimbNode", "Skin", ...
  RecordRef record;
  /// Holds the "Transform" channel of a model of version 5 and older; none otherwise.
  RecordRef channels;
};

/// `source` is used by `destination`, as a whole or by one of its properties.
struct FbxConnection {
  uint32_t source = 0;
  uint32_t destination = 0;
  std::string_view property;  ///< empty for object to object
};

/// The objects of a document and who is connected to whom, both in file order.
/// Every version ends up in the form of version 7: geometry, attributes, skins
/// and clusters are objects of their own that connections tie together.
class ObjectTable {
 public:
  /// Stands for the scene's root node, which has no object of its own.
  static constexpr uint32_t kRoot = 0xffffffff;

  explicit ObjectTable(const RecordTree& tree);

  std::span<const FbxObject> Objects() const { return objects_; }
  const FbxObject& operator[](uint32_t index) const { return objects_[index]; }

  /// Finds the object that value `i` of `record` names, by its identifier or, before version 7, by its name.
  /// Of equal ones the first object counts. False when there is none.
  bool Find(RecordRef record, size_t i, uint32_t& index) const;

  /// "Transform" channel of the root, where a file of version 5 or older has a root of its own.
  RecordRef RootChannels() const { return rootChannels_; }

  /// Connections whose ends both exist, in file order.
  std::span<const FbxConnection> Connections() const { return connections_; }

 private:
  uint32_t AddObject(const FbxObject& object);
  void Connect(uint32_t source, uint32_t destination, std::string_view property = {}) {
    connections_.push_back({source, destination, property});
  }
  bool IsA(ObjectKind kind, uint32_t index) const { return index != kRoot && objects_[index].kind == kind; }
  bool FindEnd(RecordRef record, size_t i, uint32_t& index) const;
  void ReadConnections(RecordRef connections);

  // read_identified_objects.cpp: version 7, objects with identifiers
  void ReadIdentifiedObjects(const RecordTree& tree);

  // read_named_objects.cpp: version 6, objects with unique names and the geometry inside the model
  void ReadNamedObjects(const RecordTree& tree);
  void AddAttributeOf(uint32_t model);
  uint32_t NextNamesake(uint32_t first);

  // read_nested_objects.cpp: version 5 and older, everything inside the models
  void ReadNestedObjects(const RecordTree& tree);
  void AddSkinOf(uint32_t model);
  void AddMaterialsOf(uint32_t model);

  bool ascii_;
  std::vector<FbxObject> objects_;
  std::unordered_map<int64_t, uint32_t, base::MixedHash> byId_;
  std::unordered_map<std::string_view, uint32_t> byName_;
  /// Further objects of the name of an object, and how many of them have a parent.
  std::unordered_map<uint32_t, std::vector<uint32_t>> namesakes_;
  std::unordered_map<uint32_t, size_t> placed_;
  /// Geometry that was made from the record of a model, by model.
  std::unordered_map<uint32_t, uint32_t> geometryOf_;
  std::vector<FbxConnection> connections_;
  RecordRef rootChannels_;
};

/// Kind of the object that a record called `recordName` describes; false when it describes none that is kept.
bool FindObjectKind(std::string_view recordName, ObjectKind& kind);

/// Name part of "Class::Name" (ASCII) or "Name" 00 01 "Class" (binary); the whole text without a separator.
std::string_view ObjectNamePart(std::string_view text, bool ascii);

/// Sub-types of some private objects carry a prefix.
std::string_view WithoutSubTypePrefix(std::string_view subType);

}  // namespace scene
